#!/usr/bin/env python3
"""service.py [--service build/bin/velometer-service] [--runs N]: what lists, charts and pages of 1,000 and of
100,000 tests cost, when a page is ready in Chromium, and what an export and deleting 100,000 tests do to others.
All on loopback, in a directory of its own; needs 2 GB of disk and python3-selenium (/usr/bin/python3)."""
import argparse
import base64
import hashlib
import http.client
import json
import pathlib
import os
import random
import re
import shutil
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import threading
import time
import zlib

from common import UNLIMITED

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENT = (ROOT / "tests/service/data/report.xml").read_text(encoding="utf-8")
SMALL, LARGE = (1001, 1000), (1002, 100_000)
MODES = ["", "WlanMode", "GsmMode", "WcdmaMode", "LteMode", "NrMode"]
QUESTIONS = ["tests", "tests?sort=download", "tests?sort=upload", "tests?sort=rtt", "tests?sort=server", "tests?type=lte&location=Train", "summary", "summary?type=lte",
             "buckets?metric=download", "buckets?metric=download&from=2023-12-01&to=2023-12-07",
             "distribution?metric=download&by=hour", "map?zoom=10", "facets"]
PAGE = "/velometer/Controller?page=UserReport"
#: Notes when the charts of the first screen are drawn, the list is there, and a click would be heard.
WATCH = """new MutationObserver((_, watch) => {
  if (document.querySelectorAll("#time .plot svg").length === 3 && document.querySelector("table.tests tbody tr")) {
    watch.disconnect();
    requestAnimationFrame(() => setTimeout(() => { window.ready = performance.now(); }));
  }
}).observe(document, { childList: true, subtree: true });"""


def load():
    return "load %.1f" % os.getloadavg()[0]


def serve(program, file):
    process = subprocess.Popen([program, "--listen", "127.0.0.1:0", "--database", f"sqlite:{file}",
                                *UNLIMITED],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return process, int(process.stdout.readline().rsplit(":", 1)[1])


def end(process):
    process.terminate()
    process.wait()


def seed(file):
    """Rows as the service writes them, of five kinds of connections and three operators, with a document of 8 kB."""
    random.seed(5)
    document = DOCUMENT.replace("<OS>", "<OS>" + "x" * 5000)
    base = sqlite3.connect(file)
    base.execute("PRAGMA synchronous=OFF")
    columns = ("userid,seriesid,testid,client_time,server_time,public_ip,test_server,connection_type,location,network,"
               "mcc,mnc,platform,model,manufacturer,applet_version,download_avg,upload_avg,upload_client_avg,rtt_avg,"
               "latitude,longitude,document,verified,service_late,type,operator,download_rate,upload_rate,rtt,bytes,"
               "accuracy").split(",")
    for user, count in (SMALL, LARGE):
        base.execute("INSERT INTO users(id,created) VALUES(?,0)", (user,))
        for i in range(count):
            kind, operator = random.randint(1, 5), random.choice(["01", "02", "03"])
            down, rtt = int(random.lognormvariate(17, 1)), random.randint(10**7, 9 * 10**7)
            now = 1_700_000_000_000 + i * 60_000
            base.execute(f"INSERT INTO reports({','.join(columns)}) VALUES({','.join('?' * len(columns))})",
                         (user, i // 50, i, now, now, "127.0.0.1", random.choice(["a.example", "b.example"]),
                          MODES[kind], random.choice(["Indoor", "Train"]), "Net" + operator, "228", operator, "P", "M",
                          "K", "V1", down, down // 3, down // 3, rtt, round(47 + random.random(), 6),
                          round(8 + random.random(), 6),
                          document, 1, 0, kind, "228-" + operator, down, down // 3, rtt, 2 * down, 9.0))
    base.commit()
    base.execute("PRAGMA wal_checkpoint(TRUNCATE)")
    base.close()
    os.sync()  # what is still being written would be measured


def first_bytes(port, path, times=25):
    """Milliseconds to the head of the answer: of the first question, and the median of the others; bytes."""
    took = []
    for _ in range(times):
        client = http.client.HTTPConnection("127.0.0.1", port)
        begin = time.perf_counter()
        client.request("GET", path, headers={"Accept-Encoding": "gzip"})
        answer = client.getresponse()
        took.append((time.perf_counter() - begin) * 1000)
        size = len(answer.read())
        assert answer.status == 200, path
        client.close()
    return took[0], statistics.median(took[1:]), size


def report(number):
    text = DOCUMENT.replace("1700000000123", str(1_800_000_000_000 + number))
    one = lambda pattern: re.search(pattern, text, re.S).group(1)
    parts = ["8352", one("<UserID>(.*?)<"), one("<TestServer>(.*?)<"), one("<TestID>(.*?)<"), one("<SeriesID>(.*?)<"),
             one("<Download>.*?<Avg>(.*?)<"), one("<Upload>.*?<Avg>(.*?)<"),
             str(int(one("<ResponseTime>.*?<Avg>(.*?)<")) // 1000), str(1_800_000_000_000 + number), "8352"]
    digest = base64.b64encode(hashlib.md5("|".join(parts).encode()).digest()).decode()
    return re.sub('Hash="[^"]*"', f'Hash="{digest}"', text)


def intake(port, numbers, stop, most):
    took = []
    while not stop.is_set() and len(took) < most:
        body = report(next(numbers))
        begin = time.perf_counter()
        client = http.client.HTTPConnection("127.0.0.1", port)
        client.request("POST", "/velometer/redirect_iphone.php", body)
        assert client.getresponse().status == 200
        took.append((time.perf_counter() - begin) * 1000)
        client.close()
        time.sleep(0.01)
    took.sort()
    return f"{len(took)} reports, median {took[len(took) // 2]:.1f} ms, p99 {took[int(len(took) * 0.99)]:.1f} ms"


def delete_all(port, done):
    begin = time.time()
    client = http.client.HTTPConnection("127.0.0.1", port, timeout=300)
    client.request("POST", "/velometer/api/v1/delete", json.dumps({"filter": "", "confirm": "DELETE"}),
                   {"Velometer-User": str(LARGE[0])})
    assert client.getresponse().status in (200, 202)
    count = 1
    while count:
        client = http.client.HTTPConnection("127.0.0.1", port)
        client.request("GET", f"/velometer/api/v1/tests?limit=1&userid={LARGE[0]}")
        count = json.loads(client.getresponse().read())["count"]
        time.sleep(0.2)
    print(f"deleted {LARGE[1]} tests in {time.time() - begin:.1f} s")
    done.set()


def first_looks(program, file, runs):
    """ms to the first byte of the page, the first after a start."""
    took = []
    for _ in range(runs):
        process, port = serve(program, file)
        took.append(first_bytes(port, f"{PAGE}&userid={LARGE[0]}", 2)[0])
        end(process)
    print(f"{'first look at 100,000 after a start, ms':58} " + ", ".join(f"{each:.0f}" for each in took), load())


def in_chromium(port, runs):
    sys.path.insert(0, str(ROOT / "tests/web"))
    from browser import Browser
    browser = Browser(f"127.0.0.1:{port}")
    try:
        browser.cdp("Page.enable")
        browser.cdp("Network.enable")
        browser.cdp("Page.addScriptToEvaluateOnNewDocument", source=WATCH)
        browser.open("/")
        for user, count in (SMALL, LARGE):
            took, sizes = [], []
            for _ in range(runs):
                browser.cdp("Network.clearBrowserCache")
                browser.network()
                browser.open(f"{PAGE}&userid={user}")
                took.append(browser.wait(lambda: browser.run("return window.ready")))
                sizes.append(sum(size for url, size in browser.network() if "/outline/" not in url))
            print(f"{f'page of {count:,} tests in Chromium, empty cache: ready, ms':58} "
                  + ", ".join(f"{each:.0f}" for each in took), f"({max(sizes) / 1000:.1f} kB)", load())
    finally:
        browser.close()


def healthy(port, stop):
    """ms that /healthz takes until @p stop is set: median and worst."""
    took = []
    while not stop.is_set():
        begin = time.perf_counter()
        client = http.client.HTTPConnection("127.0.0.1", port)
        client.request("GET", "/healthz")
        assert client.getresponse().status == 200
        took.append((time.perf_counter() - begin) * 1000)
        time.sleep(0.02)
    return f"/healthz median {statistics.median(took):.1f} ms, worst {max(took):.1f} ms"


def export(process, port, packed):
    stop, told = threading.Event(), []
    watch = threading.Thread(target=lambda: told.append(healthy(port, stop)))
    watch.start()
    begin = time.time()
    client = http.client.HTTPConnection("127.0.0.1", port, timeout=300)
    client.request("GET", f"/velometer/api/v1/export?format=csv&userid={LARGE[0]}",
                   headers={"Accept-Encoding": "gzip"} if packed else {})
    answer = client.getresponse()
    inflate = zlib.decompressobj(31) if packed else None
    lines = wire = 0
    while part := answer.read(1 << 16):
        wire += len(part)
        lines += (inflate.decompress(part) if packed else part).count(b"\n")
    assert lines == LARGE[1] + 1, lines
    stop.set()
    watch.join()
    peak = re.search(r"VmHWM:\s+(\d+)", pathlib.Path(f"/proc/{process.pid}/status").read_text())[1]
    print(f"{'CSV of 100,000 tests' + (', packed' if packed else ''):58} {time.time() - begin:.1f} s, {wire / 1e6:.1f} MB, "
          f"{told[0]}, most memory {int(peak) // 1024} MiB", load())


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--service", default=ROOT / "build/bin/velometer-service")
    parser.add_argument("--runs", type=int, default=3)
    program, runs = (lambda given: (given.service, given.runs))(parser.parse_args())
    with tempfile.TemporaryDirectory() as directory:
        file = f"{directory}/reports.sqlite"
        process, _ = serve(program, file)
        end(process)
        seed(file)
        first_looks(program, file, runs)
        process, port = serve(program, file)
        try:
            print(f"{'ms to the first byte':58} {'1,000: first':>13} {'then':>6} {'bytes':>7} "
                  f"{'100,000: first':>15} {'then':>6} {'bytes':>7}", load())
            for question in [f"/velometer/api/v1/{each}" for each in QUESTIONS] + [PAGE]:
                row = f"{question:58}"
                for user, _ in (SMALL, LARGE):
                    row += " {:13.1f} {:6.1f} {:7d}".format(
                        *first_bytes(port, question + ("&" if "?" in question else "?") + f"userid={user}"))
                print(row)
            in_chromium(port, runs)
            for packed in (False, True):
                export(process, port, packed)
        finally:
            end(process)
        for _ in range(runs):
            copy = f"{directory}/copy.sqlite"
            shutil.copy(file, copy)
            process, port = serve(program, copy)
            try:
                numbers = iter(range(10**9))
                print("reports at rest:", intake(port, numbers, threading.Event(), 500), load())
                done = threading.Event()
                deleting = threading.Thread(target=delete_all, args=(port, done))
                deleting.start()
                print("while deleting:", intake(port, numbers, done, 10**6), load())
                deleting.join()
            finally:
                end(process)


main()
