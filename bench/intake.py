#!/usr/bin/env python3
"""intake.py [--reports N] [--connections N]: how many reports of 10 KB a service takes a second, kept in SQLite and in
a PostgreSQL of its own, in turns, and how long each waits for its 200: alone, while 32 readers ask for pages, while old
reports are purged, and with two services on one PostgreSQL. On loopback, in a directory of its own."""
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
from common import BIN, UNLIMITED, need, stop
from generate_reports import Generator, document, midnight

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("--reports", type=int, default=2000, help="a line")
parser.add_argument("--connections", type=int, default=16)
parser.add_argument("--rounds", type=int, default=1)
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

    def ask(self, database, statement):
        return subprocess.run([self.programs / "psql", "-d", database, "-Atc", statement], check=True, text=True,
                              stdout=subprocess.PIPE).stdout.strip()


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


def start(database, *more):
    service = subprocess.Popen([BIN / "velometer-service", "--listen", "127.0.0.1:0", "--database", database,
                                "--max-connections-per-address", "2000", "--device-key", KEY, "--log-level", "error",
                                *UNLIMITED, *more], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return service, int(service.stdout.readline().rsplit(":", 1)[1])


def read_pages(job):
    """32 readers of one user's page, each at once again, until the time is over; how many pages that were."""
    import http.client
    port, until = job

    def read(_):
        count = 0
        while not until.is_set():
            connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)
            connection.request("GET", f"/velometer/Controller?page=UserReport&userid={FIRST_USER}")
            count += connection.getresponse().status == 200
            connection.close()
        return count

    with concurrent.futures.ThreadPoolExecutor(32) as pool:
        return sum(pool.map(read, range(32)))


def measure(database, bodies, pages=False, services=1, more=()):
    running = [start(database, *more) for _ in range(services)]
    shares = 2
    try:
        with multiprocessing.Manager() as manager, multiprocessing.Pool(shares + 1) as pool:
            over = manager.Event()
            reading = pool.apply_async(read_pages, ((running[0][1], over),)) if pages else None
            begun = time.perf_counter()
            answers = sum(pool.map(post_all, [(running[i % services][1], bodies[i::shares], options.connections // shares)
                                              for i in range(shares)], 1), [])
            took = time.perf_counter() - begun
            over.set()
            read = reading.get() if reading else 0
    finally:
        for service, _ in running:
            stop(service)
    refused = sum(status != 200 for _, status in answers)
    waits = sorted(seconds * 1e3 for seconds, _ in answers)
    return len(bodies) / took, statistics.median(waits), waits[int(len(waits) * 0.99)], refused, read / took


def age(database, postgres):
    """Makes what is stored as old as nothing else; the count of it."""
    change = "UPDATE reports SET server_time = 1"
    if database.startswith("sqlite:"):
        import sqlite3
        with sqlite3.connect(database[7:]) as base:
            return base.execute(change).rowcount
    return int(postgres.ask(database, change).split()[1])


def left(database, postgres):
    question = "SELECT count(*) FROM reports WHERE server_time = 1"
    if database.startswith("sqlite:"):
        import sqlite3
        with sqlite3.connect(database[7:]) as base:
            return base.execute(question).fetchone()[0]
    return int(postgres.ask(database, question))


FIRST_USER = 7_000_000_000
if __name__ == "__main__":
    tests = list(Generator(1, 7, midnight("2026-01-01")).tests(4 * options.reports, 10))
    bodies = []
    for number, test in enumerate(tests):
        test.user = FIRST_USER + number % 500
        test.text["Log"] = "x" * 4000
        bodies.append(document(test, "8352").encode())
    quarter = [bodies[i::4] for i in range(4)]
    print(f"{len(quarter[0])} reports a line, of {statistics.mean(map(len, bodies)) / 1e3:.1f} kB, {options.connections} "
          f"connections, load {os.getloadavg()[0]:.1f}")
    with tempfile.TemporaryDirectory(dir="/tmp") as folder, tempfile.TemporaryDirectory(dir="/tmp") as cluster:
        KEY = f"{folder}/key"
        postgres = Postgres(cluster)

        def tell(name, what, figures, idle):
            rate, median, late, refused, pages = figures
            print(f"{name:11}{what:26}{rate:6.0f} reports/s ({rate / idle:4.2f})  median {median:6.1f} ms  99 of 100 within "
                  f"{late:6.1f} ms  refused {refused}" + (f"  {pages:.0f} pages/s" if pages else ""), flush=True)

        try:
            for turn in range(options.rounds):
                for name, database in (("SQLite", f"sqlite:{folder}/{turn}.db"),
                                       ("PostgreSQL", postgres.database(f"t{turn}"))):
                    idle = measure(database, quarter[0])
                    tell(name, "alone", idle, idle[0])
                    tell(name, "beside 32 readers of pages", measure(database, quarter[1], pages=True), idle[0])
                    old = age(database, postgres)
                    tell(name, "beside a purge", measure(database, quarter[2], more=("--retain-days", "1")), idle[0])
                    print(f"{'':11}of {old} old reports {old - left(database, postgres)} were purged meanwhile")
                    if name == "PostgreSQL":
                        tell(name, "two services", measure(database, quarter[3], services=2), idle[0])
        finally:
            postgres.server.send_signal(2)
            postgres.server.wait()
