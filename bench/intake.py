#!/usr/bin/env python3
"""intake.py [--reports N] [--connections N]: how many reports of 10 KB a service takes a second, kept in SQLite and in
a PostgreSQL of its own, in turns; and how long each waits for its 200. On loopback, in a directory of its own."""
import argparse
import concurrent.futures
import multiprocessing
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tools"))
from common import BIN, need, stop
from generate_reports import Generator, document, midnight

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("--reports", type=int, default=4000)
parser.add_argument("--connections", type=int, default=16)
parser.add_argument("--rounds", type=int, default=3)
options = parser.parse_args()
need()
AS_NOBODY = ["setpriv", "--reuid", "nobody", "--regid", "nogroup", "--clear-groups"] if os.geteuid() == 0 else []


class Postgres:
    def __init__(self, folder):
        self.programs = sorted(pathlib.Path("/usr/lib/postgresql").glob("*/bin"))[-1]
        self.folder = folder
        if AS_NOBODY:
            os.chown(folder, 65534, 65534)
        run = {"check": True, "cwd": folder, "stdout": subprocess.DEVNULL}
        subprocess.run([*AS_NOBODY, self.programs / "initdb", "-D", f"{folder}/data", "-U", "velometer", "-A", "trust"], **run)
        self.server = subprocess.Popen([*AS_NOBODY, self.programs / "postgres", "-D", f"{folder}/data", "-k", folder, "-c",
                                        "listen_addresses="], cwd=folder, stderr=subprocess.DEVNULL)
        while subprocess.run([self.programs / "pg_isready", "-q", "-h", folder]).returncode != 0:
            time.sleep(0.1)

    def database(self, name):
        subprocess.run([self.programs / "createdb", "-h", self.folder, "-U", "velometer", name], check=True)
        return f"postgresql://velometer@/{name}?host={self.folder}"


def post_all(job):
    """Posts its share over some connections at once; the seconds that each waited, and the refused."""
    import http.client
    port, bodies, connections = job

    def post(body):
        begun = time.perf_counter()
        connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)
        connection.request("POST", "/velometer/redirect_iphone.php", body)
        status = connection.getresponse().status
        connection.close()
        return time.perf_counter() - begun, status

    with concurrent.futures.ThreadPoolExecutor(connections) as pool:
        return list(pool.map(post, bodies))


def measure(database, bodies):
    service = subprocess.Popen([BIN / "velometer-service", "--listen", "127.0.0.1:0", "--database", database,
                                "--max-connections-per-address", "2000"], stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True)
    try:
        port = int(service.stdout.readline().rsplit(":", 1)[1])
        shares = 2
        with multiprocessing.Pool(shares) as pool:
            begun = time.perf_counter()
            answers = sum(pool.map(post_all, [(port, bodies[i::shares], options.connections // shares)
                                              for i in range(shares)]), [])
            took = time.perf_counter() - begun
    finally:
        stop(service)
    refused = sum(status != 200 for _, status in answers)
    waits = sorted(seconds * 1e3 for seconds, _ in answers)
    return len(bodies) / took, statistics.median(waits), waits[int(len(waits) * 0.99)], refused


if __name__ == "__main__":
    tests = list(Generator(1, 7, midnight("2026-01-01")).tests(options.reports, 10))
    bodies = []
    for number, test in enumerate(tests):
        test.user = 7_000_000_000 + number % 500
        test.text["Log"] = "x" * 4000
        bodies.append(document(test, "8352").encode())
    print(f"{len(bodies)} reports of {statistics.mean(map(len, bodies)) / 1e3:.1f} kB, {options.connections} connections, "
          f"load {os.getloadavg()[0]:.1f}")
    with tempfile.TemporaryDirectory(dir="/tmp") as folder, tempfile.TemporaryDirectory(dir="/tmp") as cluster:
        postgres = Postgres(cluster)
        try:
            for turn in range(options.rounds):
                for name, database in (("SQLite", f"sqlite:{folder}/{turn}.db"),
                                       ("PostgreSQL", postgres.database(f"t{turn}"))):
                    rate, median, late, refused = measure(database, bodies)
                    print(f"{name:11} {rate:7.0f} reports/s   median {median:6.1f} ms   99 of 100 within {late:6.1f} ms"
                          f"   refused {refused}", flush=True)
        finally:
            postgres.server.send_signal(2)
            postgres.server.wait()
