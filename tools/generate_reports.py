#!/usr/bin/env python3
"""Fills a running service with one user's measurements, for pictures, tests and benches.

  tools/generate_reports.py --service 127.0.0.1:8080 --database FILE [--tests 1000] [--users 1] ...

The reports are posted like a client's. A service shows the rates of those tests alone whose streams it has
served, and nobody streams for a hundred days to take a picture: the rows of these streams are written into the
service's own database, which is why its file is needed. So this is for a database that was made for it, and
for nothing else. The same arguments give the same measurements.
"""
import argparse
import base64
import concurrent.futures
import dataclasses
import datetime
import hashlib
import http.client
import itertools
import json
import math
import random
import sqlite3
import sys
import time
from xml.sax.saxutils import escape

INTERVALS = 71  # of 100 ms in a stream of 7.1 s
RAMP_UP, WINDOW = 2, 10
DOWNLOAD, UPLOAD = 1, 2  # as the data base writes a direction
DAY = 86_400_000

#: Mode code, download, upload (bit/s) and round trip (ns) in the middle of a quiet afternoon.
TYPES = {
    "wlan": ("WlanMode", 108e6, 34e6, 9.5e6),
    "5g": ("NrMode", 290e6, 46e6, 17e6),
    "lte": ("LteMode", 46e6, 15e6, 32e6),
    "3g": ("WcdmaMode", 4.9e6, 1.5e6, 74e6),
    "2g": ("GsmMode", 1.9e5, 7e4, 410e6),
}
OPERATORS = [("Swisscom", "01", 1.0), ("Sunrise", "02", 0.86), ("Salt", "03", 0.72)]
SERVERS = ["speed-zh.example.net", "speed-be.example.net", "speed-ge.example.net"]
HOME = (47.2266, 8.8184, 410)

#: Latitude, longitude and height along the drive from Rapperswil to Geneva.
ROUTE = [(47.2266, 8.8184, 410), (47.2590, 8.7150, 440), (47.3667, 8.5500, 408), (47.4000, 8.4000, 390),
         (47.4720, 8.3060, 385), (47.3900, 8.0500, 380), (47.3000, 7.8000, 430), (47.2100, 7.5400, 440),
         (47.0800, 7.5200, 500), (46.9480, 7.4474, 540), (46.8060, 7.1620, 610), (46.6200, 7.0600, 770),
         (46.5100, 6.8800, 500), (46.5197, 6.6323, 495), (46.4600, 6.3900, 400), (46.3830, 6.2390, 400),
         (46.2044, 6.1432, 375)]
#: Where along it (0 to 1) there is 5G, and where there is little.
CITIES, GAPS = [0.12, 0.56, 0.80, 0.98], [0.335, 0.66, 0.70]


@dataclasses.dataclass
class Stream:
    """Bytes of intervals of 100 ms, and what both ends make of them."""
    counts: list

    @property
    def total(self):
        return sum(self.counts)

    def rates(self):
        """Least, average and greatest bit/s, as the service counts; None for a stream too short to tell."""
        full = self.counts[RAMP_UP:]
        if len(full) < WINDOW:
            return None
        means = [sum(full[i:i + WINDOW]) * 8 * 10 // WINDOW for i in range(len(full) - WINDOW + 1)]
        average = sum(full) * 8 * 10 // len(full)
        return min(means), average, max(means)

    def device_average(self):
        return self.total * 8 * 10 // len(self.counts) if self.rates() else -1


@dataclasses.dataclass
class Test:
    """One measurement. `text` has texts of the report in place of the usual ones, by the element's name."""
    user: int
    series: int
    number: int
    time: int  # ms
    kind: str
    operator: tuple
    server: str
    location: str
    start: tuple  # latitude, longitude, height
    end: tuple
    accuracy: int
    signal: int
    cell: int
    download: Stream
    upload: Stream
    served_upload: Stream
    rtt: tuple  # least, average, greatest ns; -1 of one that failed
    text: dict = dataclasses.field(default_factory=dict)


def along(share):
    """The place after @p share of the route."""
    lengths = [math.dist(a[:2], b[:2]) for a, b in itertools.pairwise(ROUTE)]
    rest = share * sum(lengths)
    for (a, b), length in zip(itertools.pairwise(ROUTE), lengths):
        if rest <= length:
            return tuple(x + (y - x) * rest / length for x, y in zip(a, b))
        rest -= length
    return ROUTE[-1]


def rhythm(hour):
    """How much of its afternoon's rate a network gives: little in the evening, much at night."""
    evening = 0.58 * math.exp(-((hour - 20.3) / 2.1) ** 2)
    noon = 0.16 * math.exp(-((hour - 12.5) / 1.2) ** 2)
    night = 0.22 * math.exp(-(min(hour, 24 - hour) / 4.0) ** 2)
    return 1 - evening - noon + night


def stream(rng, rate, ramp):
    level, counts = 1.0, []
    for i in range(INTERVALS):
        level += 0.35 * (1 - level) + rng.gauss(0, 0.09)
        share = max(level, 0.03) * min(1, (i + 1) / ramp)
        packets = rate * share / 80 / 1448
        # A slow link gives whole packets, now and then one.
        counts.append(int(1448 * (math.floor(packets) + (rng.random() < packets % 1))))
    return Stream(counts)


def served(rng, sent):
    """What of an upload arrives in the intervals, a little later than it was sent."""
    held, counts = 0, []
    for count in sent.counts:
        share = rng.uniform(0.93, 1.0)
        counts.append(int((held + count) * share))
        held += count - counts[-1]
    return Stream(counts)


class Generator:
    def __init__(self, seed, user, until):
        self.rng = random.Random(f"{seed}/{user}")
        self.user, self.until = user, until
        # So that several users do not stand on one spot.
        self.home = (HOME[0] + self.rng.gauss(0, 0.004), HOME[1] + self.rng.gauss(0, 0.006), HOME[2])

    def tests(self, count, days):
        """@p count tests, oldest first, in series over @p days days."""
        rng, left, series = self.rng, count, 0
        plans = []
        while left > 0:
            kind = rng.choices(["home", "drive", "train", "walk", "office"], [30, 11, 8, 25, 26])[0]
            length = min(left, {"home": rng.randint(1, 8), "drive": rng.randint(18, 34), "train": rng.randint(9, 18),
                                "walk": rng.randint(2, 7), "office": rng.randint(1, 6)}[kind])
            hour = {"home": rng.choice([6.8, 18.8, 20.2, 21.3, 22.4, 9.5, 14.2]), "drive": rng.choice([7.2, 15.5]),
                    "train": rng.choice([6.6, 17.2]), "walk": rng.choice([10.4, 12.3, 13.2, 18.2, 19.4]),
                    "office": rng.choice([8.4, 10.1, 13.6, 15.9])}[kind] + rng.gauss(0, 0.9)
            day = rng.randrange(days)
            if 40 <= day % 61 < 44:  # a few days without a test
                day -= 5
            plans.append((self.until - day * DAY + int(hour * 3_600_000), kind, length))
            left -= length
        for start, kind, length in sorted(plans):
            series += 1
            yield from self.series(series, start, kind, length)

    def series(self, series, start, kind, length):
        rng = self.rng
        operator = rng.choices(OPERATORS, [6, 3, 2])[0]
        server = rng.choices(SERVERS, [6, 3, 2])[0]
        begin, reach = rng.uniform(0, 0.45), rng.uniform(0.45, 0.55)
        backwards = rng.random() < 0.5
        spot = {"home": self.home, "office": (47.3769, 8.5417, 410), "walk": along(rng.choice(CITIES))}.get(kind)
        step = {"drive": 240_000, "train": 300_000}.get(kind, 420_000)
        for i in range(length):
            moment = start + i * step + rng.randrange(20_000)
            if spot:
                near = 0.0004 if kind != "walk" else 0.006
                place = (spot[0] + rng.gauss(0, near), spot[1] + rng.gauss(0, near * 1.4), spot[2])
                share, goes = 0.56, 0
            else:
                part = begin + reach * i / max(length, 2)
                share = 1 - part if backwards else part
                wide = 0.0015 if kind == "drive" else 0.008
                base = along(share)
                place = (base[0] + rng.gauss(0, wide), base[1] + rng.gauss(0, wide), base[2])
                goes = 0.004
            yield self.test(series, i + 1, moment, kind, operator, server, place, share, goes)

    def technology(self, kind, share):
        rng = self.rng
        if kind in ("home", "office"):
            return rng.choices(["wlan", "lte", "5g"], [8, 1, 1])[0]
        city = min(abs(share - c) for c in CITIES) < 0.045 or kind == "walk"
        gap = min(abs(share - g) for g in GAPS) < 0.022
        weights = {"5g": 6 if city else 1.2, "lte": 0.6 if gap else 5, "3g": 4 if gap else 0.8, "2g": 2.2 if gap else 0.12}
        return rng.choices(list(weights), list(weights.values()))[0]

    def test(self, series, number, moment, kind, operator, server, place, share, goes):
        rng = self.rng
        technology = self.technology(kind, share)
        _, down, up, rtt = TYPES[technology]
        hour = moment / 3_600_000 % 24
        factor = rhythm(hour) * operator[2] * rng.lognormvariate(0, 0.28 if technology != "wlan" else 0.18)
        signal = max(1, min(100, round(rng.gauss(68, 15))))
        if technology != "wlan":
            factor *= 0.45 + 0.8 * signal / 100
        download = stream(rng, down * factor, 5)
        upload = stream(rng, up * factor ** 0.8, 4)
        average = rtt * rng.lognormvariate(0, 0.16) / max(rhythm(hour), 0.3) ** 0.5
        times = tuple(int(average * part) for part in (rng.uniform(0.82, 0.95), 1, rng.uniform(1.05, 1.5)))
        if rng.random() < 0.025:
            upload = Stream(upload.counts[:4])
        if rng.random() < 0.012:
            download = Stream(download.counts[:6])
        if rng.random() < 0.01:
            times = (-1, -1, -1)
        end = (place[0] + rng.gauss(0, goes), place[1] + rng.gauss(0, goes), place[2] + rng.gauss(0, 3))
        location = {"home": "Indoor", "office": "Indoor", "drive": "Car", "train": "Train"}.get(kind, "Outdoor")
        return Test(user=self.user, series=series, number=number, time=moment, kind=technology, operator=operator,
                    server=server, location=location, start=place, end=end,
                    accuracy=rng.choice([4, 5, 6, 8, 8, 12, 18, 25, 40, 65, 140]), signal=signal,
                    cell=20_000 + int(share * 400) * 16 + rng.randrange(3), download=download, upload=upload,
                    served_upload=served(rng, upload), rtt=times)


def log_entries(test, mode):
    for index, phase in enumerate(("DownloadStart", "DownloadEnd", "UploadStart", "UploadEnd", "RttStart", "RttEnd")):
        part = index / 5
        latitude, longitude, height = (a + (b - a) * part for a, b in zip(test.start, test.end))
        cell = 0 if test.kind == "wlan" else test.cell + (part > 0.6 and test.start != test.end and test.cell % 2)
        yield (f"<LogEntry><LogId>{index + 1}</LogId><Timestamp>{test.time + index * 3600}</Timestamp>"
               f"<Phase>{phase}</Phase><Position GPSLock=\"{int(test.accuracy < 100)}\">"
               f"<Latitude>{latitude:.6f}</Latitude><Longitude>{longitude:.6f}</Longitude>"
               f"<Altitude>{height:.6f}</Altitude><HorizontalAccuracy>{test.accuracy:.6f}</HorizontalAccuracy>"
               f"<VerticalAccuracy>{test.accuracy * 1.5:.6f}</VerticalAccuracy></Position>"
               f"<RTT>{max(test.rtt[1], 0) // 1000}</RTT><ConnectionType>{mode}</ConnectionType>"
               f"<SignalStrength>{test.signal}</SignalStrength><CellID>{cell}</CellID>"
               "<NeighboringCells></NeighboringCells></LogEntry>")


def load_figures(test):
    """What a client tells of the round trips beside the streams, in its log; nothing of every fourth test."""
    if test.number % 4 == 0 or test.rtt[1] <= 0:
        return None
    rng = random.Random(f"{test.user}/{test.series}/{test.number}")
    figures = {"v": 1, "idle_ns": [int(test.rtt[1] * rng.uniform(0.95, 1.05)) for _ in range(3)]}
    for name, measured, queue in (("download", test.download, rng.uniform(5e6, 60e6)),
                                  ("upload", test.upload, rng.uniform(5e6, 400e6))):
        times = [200_000_000 * (i + 1) for i in range(len(measured.counts) // 2)]
        figures[name] = {"cc": "bbr", "t_ns": times, "rtt_ns": [
            -1 if rng.random() < 0.02 else int(test.rtt[1] + queue * rng.uniform(0.7, 1.2)) for _ in times]}
    return figures


def document(test, salt):
    """The report of @p test, as a client writes it."""
    mode = test.text.get("ConnectionType", TYPES[test.kind][0])
    wlan = test.kind == "wlan"
    text = {"TestServer": test.server, "ConnectionType": mode, "Location": test.location,
            "Network": "Home network" if wlan else test.operator[0], "OS": "Linux 6.1", "Platform": "Handset",
            "Model": "OV-1", "Manufacturer": "Orvak", "MNC": "" if wlan else test.operator[1],
            "MCC": "" if wlan else "228", "AppletVersion": "V1.3.0", "Log": "Status: 3\nDownload finished\n",
            "Phase": ""} | test.text
    if (load := load_figures(test)) and "Log" not in test.text:
        text["Log"] += "LoadFigures: " + json.dumps(load, separators=(",", ":")) + "\n"
    device, service = test.upload.rates(), test.served_upload.rates()
    download = test.download.rates() or (-1, -1, -1)
    download = (download[0], test.download.device_average(), download[2])
    device = (device[0], test.upload.device_average(), device[2]) if device else (-1, -1, -1)
    service = service or (0, 0, 0)
    parts = [salt, test.user, text["TestServer"], test.number, test.series, download[1], service[1],
             int(test.rtt[1] / 1000), test.time, salt]
    digest = base64.b64encode(hashlib.md5("|".join(map(str, parts)).encode()).digest()).decode()

    def e(name, value):
        return f"<{name}>{escape(str(value))}</{name}>"

    def point(name, place, later):
        return e(name, f"{test.time + later} {place[0]:.6g} {place[1]:.6g} {place[2]:.6g}")

    def throughput(name, wait, figures, measured):
        rates = "".join(e(*figure) for figure in figures)
        return (f"<{name}>" + e("Valid", 1) + e("Limited", 0) + e("Testport", 8080) +
                e("TcpResponseTime", max(test.rtt[0], 0) // 1000) + e(wait, max(test.rtt[1], 0) // 500) +
                e("Duration", 100_000 * len(measured.counts)) + e("Interval", 100_000) + rates +
                e("MaxPause", 21_000) + point("StartLocation", test.start, 0) + point("EndLocation", test.end, 7100) +
                e("Bytes", ",".join(map(str, measured.counts))) + e("BytesTotal", measured.total) + f"</{name}>")

    down = throughput("Download", "HttpGetResponseTime", zip(("Min", "Avg", "Max"), download), test.download)
    up = throughput("Upload", "DataWriteWaitTime", zip(
        ("Min", "Avg", "Max", "ClientMin", "ClientAvg", "ClientMax"), service + device), test.upload)
    rtt = "".join(e(*figure) for figure in zip(("Min", "Avg", "Max"), test.rtt))
    path = "".join(f"{test.time + i * 3600} {test.start[0]:.6g} {test.start[1]:.6g} {test.start[2]:.6g} "
                   f"{test.accuracy} {test.accuracy * 2} true," for i in range(3))
    data = "<{0}><![CDATA[\n###SERVER_{1}###\n]]>\n</{0}>"
    return (
        '<?xml version="1.0"?><!DOCTYPE PerformanceIPhone SYSTEM "http://127.0.0.1/import/HSI-QRT-Mobile.dtd">'
        f'<PerformanceIPhone Hash="{digest}"><UserData>' + e("UserID", test.user) +
        e("ConnectionType", text["ConnectionType"]) + "<Rating></Rating></UserData><UserInstallation>" +
        e("AppletVersion", text["AppletVersion"]) + e("OS", text["OS"]) + "</UserInstallation><TestResult>" +
        e("TestID", test.number) + e("SeriesID", test.series) + e("TestServer", text["TestServer"]) +
        e("ClientTime", test.time) + "<ServerTime>###SERVER_TIME###</ServerTime>"
        "<PublicIP>###SERVER_PUBLICIP###</PublicIP><Domain>###SERVER_CLIENTNAME###</Domain>"
        "<ImportPublicIP>###SERVER_PUBLICIP###</ImportPublicIP><ImportDomain>###SERVER_CLIENTNAME###</ImportDomain>" +
        down + up + "<ResponseTime>" + e("Valid", 1) + e("Testport", 8080) + rtt +
        point("StartLocation", test.end, 14_400) + point("EndLocation", test.end, 16_000) +
        "</ResponseTime></TestResult><TCPParameter><LocalIP>10.0.0.3</LocalIP><LocalIP80>10.0.0.3</LocalIP80>"
        "<Web100Output>1</Web100Output><MSS>1448</MSS><RWIN>65535</RWIN><WScale>7</WScale>"
        "<Timestamps>1</Timestamps><SACK>1</SACK></TCPParameter><Mobile><UUID>generated</UUID>" +
        "".join(e(name, text[name]) for name in ("Platform", "Model", "Manufacturer", "Location", "Network", "MNC",
                                                 "MCC")) +
        "<NetworkCountryISO></NetworkCountryISO><NetworkSpecial></NetworkSpecial><Sim><Operator></Operator><MNC>"
        "</MNC><MCC></MCC><CountryISO></CountryISO></Sim>" + e("LAC", 1201) + e("CellIDs", test.cell) +
        e("LocationPath", path) + "<Log>" + "".join(log_entries(test, escape(mode))) +
        (f"<LogEntry><LogId>7</LogId><Timestamp>{test.time}</Timestamp>" + e("Phase", text["Phase"]) + "</LogEntry>"
         if text["Phase"] else "") + "</Log></Mobile>" +
        data.format("ServerDataDownload", "DOWNLOADFILE") + data.format("ServerDataUpload", "UPLOADFILE") +
        e("JavaConsoleOutput", text["Log"]) + "<AccessInfo>###SERVER_ACCESSINFO###</AccessInfo></PerformanceIPhone>")


def drive(seed, started, points=400):
    """A part of a track for the interface: through LTE, 5G and 3G, with a gap after the first half."""
    rng = random.Random(seed)
    rows, rsrp = [], -85.0
    for i in range(points):
        mode = ("LteMode", "NrMode", "LteMode", "WcdmaMode")[i * 4 // points]
        rsrp = min(max(rsrp + rng.uniform(-4, 4), -120), -70)
        rows.append([started + i * 1000, 0 if i < points // 2 else 1, round(47.0 + i * 0.0004, 6),
                     round(8.2 + seed * 0.1 + math.sin(i / 40) * 0.05, 6), mode, 70,
                     None if mode == "WcdmaMode" else round(rsrp, 1)])
    return {"schema_version": 1, "started_ms": started, "ended_ms": started + points * 1000, "first": 0,
            "columns": ["time_ms", "segment", "latitude", "longitude", "mode", "signal_percent", "rsrp_dbm"],
            "points": rows}


def kernel_facts(test, direction, measured):
    """What the service's kernel told of a stream; of every fourth test nothing, as services did once."""
    if test.number % 4 == 0:
        return ""
    rng = random.Random(f"{test.user}/{test.series}/{test.number}/{direction}")
    least, samples = int(test.rtt[0] / 1000), []
    for index, count in enumerate(measured.counts):
        figures = [100 * (index + 1), int(test.rtt[1] / 1000 * rng.uniform(1, 3)), least, count * 80, 1448 * (index // 20),
                   rng.choice(("window", "window", "receiver", "application"))]
        samples.append(" ".join(map(str, figures if direction == DOWNLOAD else figures[:2] + ["-", figures[3], "-", "-"])))
    return "congestion control bbr; ms rtt_us min_rtt_us bit/s retransmitted limit: " + "; ".join(samples)


def store_streams(database, tests):
    """The streams behind @p tests, as if the service at @p database had served them just now."""
    now = int(time.time() * 1000)
    rows = []
    for test in tests:
        for direction, measured in ((DOWNLOAD, test.download), (UPLOAD, test.served_upload)):
            rates = measured.rates()
            if rates:
                kept = rates if direction == UPLOAD else (0, rates[1], 0)
                rows.append((test.user, test.series, test.number, direction, now, measured.total,
                             100 * len(measured.counts), *kept, 0, kernel_facts(test, direction, measured)))
    with sqlite3.connect(database, timeout=30) as file:
        file.executemany("INSERT OR REPLACE INTO streams(userid, seriesid, testid, direction, ended, bytes, "
                         "lasted_ms, min, avg, max, late, kernel) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)", rows)
    file.close()


def post(service, body):
    """Posts one report; whoever is told to come later comes later."""
    for pause in (0.1, 0.3, 1, 3, None):
        connection = http.client.HTTPConnection(service, timeout=60)
        connection.request("POST", "/velometer/redirect_iphone.php", body.encode())
        status = connection.getresponse().status
        connection.close()
        if status != 503 or pause is None:
            return status
        time.sleep(pause)


def fill(service, database, tests, salt="8352", workers=8):
    """Stores the streams of @p tests and posts their reports; the statuses that were not 200."""
    refused = []
    tests = iter(tests)
    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        while batch := list(itertools.islice(tests, 1000)):
            store_streams(database, batch)
            answers = pool.map(lambda test: post(service, document(test, salt)), batch)
            refused += [status for status in answers if status != 200]
    return refused


def midnight(text):
    day = datetime.datetime.strptime(text, "%Y-%m-%d").replace(tzinfo=datetime.timezone.utc)
    return int(day.timestamp() * 1000)


def main():
    words = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    words.add_argument("--service", required=True, help="HOST:PORT of the service")
    words.add_argument("--database", required=True, help="the service's SQLite file")
    words.add_argument("--tests", type=int, default=1000, help="of each user (1000)")
    words.add_argument("--users", type=int, default=1, help="how many; their ids follow each other (1)")
    words.add_argument("--user-id", type=int, default=4_711_000_000_000_001, help="of the first user")
    words.add_argument("--seed", type=int, default=1)
    words.add_argument("--days", type=int, default=100, help="how long ago the oldest test may be (100)")
    words.add_argument("--until", default="2026-11-23", help="the day of the newest test")
    words.add_argument("--salt", default="8352", help="the deployment's")
    chosen = words.parse_args()
    until = midnight(chosen.until)
    began = time.monotonic()
    for user in range(chosen.user_id, chosen.user_id + chosen.users):
        made = Generator(chosen.seed, user, until).tests(chosen.tests, chosen.days)
        refused = fill(chosen.service, chosen.database, made, chosen.salt)
        if refused:
            sys.exit(f"{len(refused)} reports were refused, the first with status {refused[0]}.")
        print(f"/velometer/Controller?page=UserReport&userid={user}", flush=True)
    print(f"{chosen.tests * chosen.users} reports in {time.monotonic() - began:.1f} s", file=sys.stderr)


if __name__ == "__main__":
    main()
