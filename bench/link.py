#!/usr/bin/env python3
"""Client and service at the two ends of an emulated mobile link, against the link's true figures.

link.py LINK_SH [PROFILE...]: LINK_SH is the script that makes the link (as root), profiles are 3g, lte,
nr and bad-lte unless named. Prints medians of ROUNDS tests and their deviation from the truth, next to
iperf3 with BBR over the same link.
"""
import argparse
import json
import statistics
import subprocess
import time

from common import Home, iperf, need, stop

SERVER = "10.77.0.2"
HEADER_SHARE = 1448 / 1500  # IPv4 and TCP with timestamps in packets of 1500 bytes
SYN_BITS = 60 * 8

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("link", help="the script that makes the link")
parser.add_argument("profiles", nargs="*", default=["3g", "lte", "nr", "bad-lte"])
parser.add_argument("--rounds", type=int, default=3)
options = parser.parse_args()
need("iperf3", "ip", "ping")


def link(*words):
    return subprocess.run([options.link, *words], check=True, capture_output=True, text=True).stdout


def truth(profile):
    down, up, rtt, loss, *_ = link("show", profile).split()
    down, up = (float(rate.rstrip("M")) * 1e6 for rate in (down, up))
    kept = (1 - float(loss) / 100) * HEADER_SHARE
    return down * kept, up * kept, float(rtt) + SYN_BITS / up * 1e3 + SYN_BITS / down * 1e3


def measure(profile):
    true_down, true_up, true_rtt = truth(profile)
    home = Home(SERVER, 8080)
    at_server, at_client = (options.link, "server"), (options.link, "client")
    service = home.service(prefix=at_server)
    peer = subprocess.Popen([*at_server, "iperf3", "-s"], stdout=subprocess.DEVNULL)
    tests = []
    try:
        for _ in range(options.rounds):
            run = subprocess.run(home.client("--format", "json", prefix=at_client), text=True,
                                 stdout=subprocess.PIPE, env=home.environment, timeout=120, check=True)
            tests.append(json.loads(run.stdout))
            time.sleep(2)
        peer_down = iperf(5201, SERVER, reverse=True, prefix=at_client)[0]
        time.sleep(2)
        peer_up = iperf(5201, SERVER, prefix=at_client)[0]
    finally:
        stop(service)
        stop(peer)

    def report(name, values, true, unit, scale, peer_value=None):
        value = statistics.median(values)
        beside = "" if peer_value is None else f"   iperf3 {100 * (peer_value / true - 1):+6.2f} %"
        off = f"{100 * (value / true - 1):+6.2f} %" if unit != "ms" else f"{(value - true) / scale:+6.2f} ms"
        print(f"{profile:8} {name:16} {value / scale:9.3f} {unit}  true {true / scale:9.3f}  {off}{beside}"
              f"   ({', '.join(f'{v / scale:.3f}' for v in values)})", flush=True)

    report("download", [t["download"]["avg_bps"] for t in tests], true_down, "Mbit/s", 1e6, peer_down)
    report("upload (service)", [t["upload"]["server_avg_bps"] for t in tests], true_up, "Mbit/s", 1e6,
           peer_up)
    report("upload (client)", [t["upload"]["avg_bps"] for t in tests], true_up, "Mbit/s", 1e6)
    report("RTT average", [t["rtt"]["avg_ns"] / 1e6 for t in tests], true_rtt, "ms", 1)
    print(f"{profile:8} congestion control {tests[0]['tcp']['congestion']}", flush=True)


for each in options.profiles:
    link("up", each)
    try:
        measure(each)
    finally:
        link("down")
