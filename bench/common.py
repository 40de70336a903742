"""What the benchmark drivers share: where the programs are, how they are started and stopped."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

BIN = pathlib.Path(os.environ.get("VELOMETER_BIN")
                   or pathlib.Path(__file__).resolve().parent.parent / "build" / "bin")
# One address is all clients here.
UNLIMITED = [word for kind in ("ids", "streams", "reports", "pages", "exports")
             for word in (f"--max-{kind}-per-hour", "0")] + ["--max-gigabytes-per-day", "0"]


def need(*programs):
    missing = [p for p in programs if not shutil.which(p)]
    if missing:
        sys.exit(f"missing: {', '.join(missing)} (scripts/setup bench installs them)")
    if not (BIN / "velometer-cli").exists():
        sys.exit("build first: scripts/build")


class Home:
    """Settings and data of its own for a client and a service, gone at the end."""

    def __init__(self, host, port):
        self.directory = tempfile.TemporaryDirectory(prefix="velometer-bench-")
        path = pathlib.Path(self.directory.name)
        self.config = path / "deployment.conf"
        self.config.write_text(
            f"[Service]\nWebHost={host}\nWebPort={port}\n[TestServers]\nSwisscom={host}:{port}\n")
        self.database = path / "service.sqlite"
        self.environment = dict(os.environ, LC_ALL="C.UTF-8", XDG_CONFIG_HOME=str(path / "config"),
                                XDG_DATA_HOME=str(path / "data"), XDG_CACHE_HOME=str(path / "cache"))
        self.server = f"{host}:{port}"

    def service(self, prefix=(), listen=None):
        process = subprocess.Popen(
            [*prefix, str(BIN / "velometer-service"), "--listen", listen or self.server,
             "--database", f"sqlite:{self.database}", *UNLIMITED],
            stdout=subprocess.PIPE, text=True, env=self.environment)
        line = process.stdout.readline()
        if not line.startswith("listening on"):
            sys.exit(f"the service does not start: {line}")
        return process

    def client(self, *arguments, prefix=()):
        return [*prefix, str(BIN / "velometer-cli"), "--config", str(self.config),
                "--server", self.server, *arguments]


def stop(process):
    process.terminate()
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def cpu_seconds(pid):
    """User and system time of a process so far."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def iperf(port, host="127.0.0.1", reverse=False, seconds=7, block=None, prefix=(), control="bbr", omit=0):
    """One single-stream TCP run: (bit/s received, bytes), without its first seconds where they are omitted."""
    command = [*prefix, "iperf3", "-c", host, "-p", str(port), "-t", str(seconds), "-C", control, "-J",
               "-O", str(omit)]
    command += ["-R"] if reverse else []
    command += ["-l", str(block)] if block else []
    answer = json.loads(subprocess.run(command, capture_output=True, text=True, timeout=seconds + 30,
                                       check=False).stdout)
    if "error" in answer:
        sys.exit(f"iperf3: {answer['error']}")
    received = answer["end"]["sum_received"]
    return received["bits_per_second"], received["bytes"]
