#!/usr/bin/env python3
"""Client and service at the two ends of an emulated mobile link, against the link's true figures.

link.py LINK_SH [PROFILE...]: LINK_SH is the script that makes the link (as root), profiles are 3g, lte,
nr and bad-lte unless named. Prints medians of ROUNDS tests and their deviation from the truth, next to
iperf3 with BBR over the same link. With --delays the round-trip time of the idle and the loaded line beside
that of a ping through the same link at the same time, and the steady rate beside the true goodput and
iperf3's after its first two seconds, with BBR and with CUBIC.
"""
import argparse
import json
import re
import signal
import statistics
import subprocess
import sys
import time

from common import Home, iperf, need, stop

SERVER = "10.77.0.2"
HEADER_SHARE = 1448 / 1500  # IPv4 and TCP with timestamps in packets of 1500 bytes
SYN_BITS = 60 * 8

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("link", help="the script that makes the link")
parser.add_argument("profiles", nargs="*", default=["3g", "lte", "nr", "bad-lte"])
parser.add_argument("--rounds", type=int, default=3)
parser.add_argument("--delays", action="store_true", help="delays and steady rate instead of the usual figures")
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


PING_LINE = re.compile(r"\[(?P<at>[0-9.]+)\].* time=(?P<ms>[0-9.]+) ms")


def pinged(lines, begin, end):
    """Median of the pings that were sent between two moments, ms."""
    times = [(float(found["at"]) - float(found["ms"]) / 1e3, float(found["ms"]))
             for found in map(PING_LINE.match, lines) if found]
    return statistics.median([ms for sent, ms in times if begin <= sent <= end] or [float("nan")])


def test_beside_ping(home, at_client, control):
    """A test as its JSON, and the medians of a ping meanwhile: idle, in the download, in the upload; ms."""
    ping = subprocess.Popen([*at_client, "ping", "-D", "-n", "-i", "0.2", SERVER], text=True,
                            stdout=subprocess.PIPE)
    begun = {"begin": time.time()}
    try:
        time.sleep(2)
        run = subprocess.Popen(
            home.client("--json-stream", "--rtt-samples", "10", "--congestion-control", control,
                        prefix=at_client), text=True, stdout=subprocess.PIPE, env=home.environment)
        for line in run.stdout:
            event = json.loads(line)
            if event["event"] == "phase":
                begun[event["phase"]] = time.time()
            elif event["event"] == "result":
                result = event["result"]
            elif event["event"] == "error":
                sys.exit(f"the test failed: {line}")
        run.wait(10)
    finally:
        ping.send_signal(signal.SIGINT)
        lines = ping.communicate(timeout=10)[0].splitlines()
    return result, [pinged(lines, begun["begin"], begun["init"]),
                    pinged(lines, begun["download"] + 0.3, begun["download_end"]),
                    pinged(lines, begun["upload"] + 0.3, begun["upload_result"])]


def measure_delays(profile, control):
    true_down, true_up, _ = truth(profile) if profile != "train" else (13.286e6 * HEADER_SHARE,
                                                                        4.429e6 * HEADER_SHARE, 0)
    home = Home(SERVER, 8080)
    at_server, at_client = (options.link, "server"), (options.link, "client")
    service = home.service(prefix=at_server)
    peer = subprocess.Popen([*at_server, "iperf3", "-s"], stdout=subprocess.DEVNULL)
    try:
        tests = []
        for _ in range(options.rounds):
            tests.append(test_beside_ping(home, at_client, control))
            time.sleep(2)
        peers = []
        for reverse in (True, False):
            peers.append(iperf(5201, SERVER, reverse=reverse, prefix=at_client, control=control, omit=2)[0])
            time.sleep(2)
    finally:
        stop(service)
        stop(peer)
    name = f"{profile:8} {control:6}"
    for number, (group, what) in enumerate([("idle", "idle"), ("download_load", "in download"),
                                            ("upload_load", "in upload")]):
        ours = statistics.median(test[group]["median_ns"] / 1e6 for test, _ in tests)
        theirs = statistics.median(medians[number] for _, medians in tests)
        count = statistics.median(len(test[group]["samples_ns"]) for test, _ in tests)
        print(f"{name} RTT {what:11} {ours:8.2f} ms  ping {theirs:8.2f}  {ours - theirs:+7.2f} ms "
              f"{100 * (ours / theirs - 1):+6.1f} %  ({count:.0f} connects)", flush=True)
    for group, true, other in (("download", true_down, peers[0]), ("upload", true_up, peers[1])):
        known = [test[group]["steady_bps"] for test, _ in tests if test[group]["steady_bps"]]
        steady = statistics.median(known) if known else None
        told = f"{steady / 1e6:8.3f} Mbit/s {100 * (steady / true - 1):+6.2f} %" if known else f"{'none':24}"
        average = statistics.median(test[group]["avg_bps"] for test, _ in tests)
        print(f"{name} {group:8} steady {told}  average "
              f"{100 * (average / true - 1):+6.2f} %  iperf3 {100 * (other / true - 1):+6.2f} %", flush=True)


for each in options.profiles:
    link("up", each)
    try:
        if options.delays:
            for control in ("bbr", "cubic"):
                measure_delays(each, control)
        else:
            measure(each)
    finally:
        link("down")
