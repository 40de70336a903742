#!/usr/bin/env python3
"""Client and service on loopback, single stream, next to iperf3 in the same run.

Prints, as medians of ROUNDS alternating rounds: rates and their ratio, CPU seconds per GB of the two
servers, and the client's greatest resident memory.
"""
import argparse
import json
import os
import statistics
import subprocess

from common import Home, cpu_seconds, iperf, need, stop

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("--rounds", type=int, default=3)
parser.add_argument("--port", type=int, default=18080)
options = parser.parse_args()
need("iperf3")

home = Home("127.0.0.1", options.port)
service = home.service()
peer = subprocess.Popen(["iperf3", "-s", "-p", str(options.port + 1)], stdout=subprocess.DEVNULL)

PHASES = {"download": "download", "upload": "upload"}
figures = {}


def note(name, value):
    figures.setdefault(name, []).append(value)


def velometer():
    """One test; the service's CPU time is read when a measurement phase begins and ends."""
    process = subprocess.Popen(home.client("--json-stream"), stdout=subprocess.PIPE, text=True,
                               env=home.environment)
    phase, begun, spent, result = None, 0.0, {}, None
    for line in process.stdout:
        event = json.loads(line)
        if event["event"] == "phase":
            now = cpu_seconds(service.pid)
            if phase in PHASES:
                spent[phase] = now - begun
            phase, begun = event["phase"], now
        elif event["event"] == "result":
            result = event["result"]
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0 or result is None:
        raise SystemExit(f"the client ended with {status}")
    note("client memory, MiB", usage.ru_maxrss / 1024)
    for direction in ("download", "upload"):
        note(f"velometer {direction}, Gbit/s", result[direction]["avg_bps"] / 1e9)
        note(f"velometer-service {direction}, CPU s/GB",
             spent[direction] / (result[direction]["bytes"] / 1e9))
    note("velometer upload as the service counts it, Gbit/s", result["upload"]["server_avg_bps"] / 1e9)
    return result["tcp"]["mss"]


def iperf3(direction, block):
    begun = cpu_seconds(peer.pid)
    rate, count = iperf(options.port + 1, reverse=direction == "download",
                        block=block if direction == "upload" else None)
    note(f"iperf3 {direction}, Gbit/s", rate / 1e9)
    note(f"iperf3 -s {direction}, CPU s/GB", (cpu_seconds(peer.pid) - begun) / (count / 1e9))


try:
    for _ in range(options.rounds):
        mss = velometer()
        iperf3("download", mss)
        iperf3("upload", mss)
finally:
    stop(service)
    stop(peer)

median = {name: statistics.median(values) for name, values in figures.items()}
for name, values in figures.items():
    print(f"{name:55} {median[name]:8.3f}   ({', '.join(f'{v:.3f}' for v in values)})")
print()
for direction in ("download", "upload"):
    rate = median[f"velometer {direction}, Gbit/s"] / median[f"iperf3 {direction}, Gbit/s"]
    cpu = (median[f"velometer-service {direction}, CPU s/GB"]
           / median[f"iperf3 -s {direction}, CPU s/GB"])
    print(f"{direction}: rate {rate:.2f} of iperf3, service CPU per GB {cpu:.2f} of iperf3's server")
