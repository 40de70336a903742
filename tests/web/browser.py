"""One headless Chromium for all tests, and the service that it looks at."""
import base64
import http.server
import io
import json
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.error
import urllib.parse
import urllib.request

from PIL import Image
from selenium import webdriver
from selenium.webdriver.chrome.service import Service as Driver
from selenium.webdriver.support.ui import WebDriverWait

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))


class Service:
    """The real service on a free port of loopback, with a database that goes with it.

    It is all servers of its deployment but those named in @p silent, where nobody answers.
    """

    def __init__(self, program, silent=(), options=()):
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            port = free.getsockname()[1]
        self.folder = tempfile.mkdtemp(prefix="velometer-web-")
        self.database = os.path.join(self.folder, "reports.db")
        deployment = pathlib.Path(self.folder, "deployment.conf")
        deployment.write_text("[TestServers]\n" + "".join(
            f"{name}=127.0.0.1:{1 if name in silent else port}\n"
            for name in ("Swisscom", "Sunrise", "HSR", "IpPlusGermany", "IpPlusItaly", "IpPlusNewYork")))
        self.process = subprocess.Popen([program, "--listen", f"127.0.0.1:{port}", "--database",
                                         "sqlite:" + self.database, "--config", str(deployment), *options],
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.host = self.process.stdout.readline().split()[-1]

    def stop(self):
        self.process.terminate()
        self.process.wait(10)
        shutil.rmtree(self.folder)

    def get(self, address, headers=(), method="GET", body=None):
        """Status, headers and text of an answer; refusals are answers too."""
        request = urllib.request.Request(f"http://{self.host}{address}", headers=dict(headers), method=method,
                                         data=body and json.dumps(body).encode())
        try:
            with urllib.request.urlopen(request, timeout=20) as answer:
                return answer.status, answer.headers, answer.read().decode()
        except urllib.error.HTTPError as refused:
            return refused.code, refused.headers, refused.read().decode()

    def api(self, user, path, method="GET", body=None):
        status, _, text = self.get("/velometer/api/v1/" + path, {"Velometer-User": str(user)}, method, body)
        assert status == 200, (status, text)
        return json.loads(text)


class TileHost:
    """A host of map tiles, all of one colour, on a free port of loopback; it may refuse, or keep silent until the end."""

    COLOUR = (200, 30, 90)

    def __init__(self):
        picture = io.BytesIO()
        Image.new("RGB", (256, 256), self.COLOUR).save(picture, "png")
        self.mood = "well"
        self.asked = []  # (path, referrer)
        self.over = threading.Event()

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(handler):
                self.asked.append((handler.path, handler.headers["Referer"]))
                if self.mood == "silent":
                    self.over.wait(60)
                handler.send_response(200 if self.mood == "well" else 500)
                handler.send_header("Content-Type", "image/png")
                handler.end_headers()
                handler.wfile.write(picture.getvalue() if self.mood == "well" else b"")

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.server.daemon_threads = True
        self.address = "http://127.0.0.1:%d" % self.server.server_port
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def stop(self):
        self.over.set()
        self.server.shutdown()
        self.server.server_close()


class Browser:
    def __init__(self, host):
        self.host = host
        self.profile = tempfile.mkdtemp(prefix="velometer-chromium-")
        options = webdriver.ChromeOptions()
        for word in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                     "--disable-background-networking", "--disable-component-update", "--disable-sync",
                     "--disable-dev-shm-usage", "--hide-scrollbars", "--lang=en-US", "--user-data-dir=" + self.profile):
            options.add_argument(word)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(options=options, service=Driver("/usr/bin/chromedriver"))
        self.size(1280, 1000)
        self.requests = []  # every address that was asked for

    def close(self):
        self.driver.quit()
        shutil.rmtree(self.profile, ignore_errors=True)

    def size(self, width, height, dark=False, scale=1):
        self.cdp("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale, mobile=False)
        self.cdp("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"},
            {"name": "prefers-reduced-motion", "value": "reduce"}])

    def cdp(self, command, **parameters):
        return self.driver.execute_cdp_cmd(command, parameters)

    def open(self, address):
        self.driver.get(f"http://{self.host}{address}")

    def all(self, selector):
        return self.driver.find_elements("css selector", selector)

    def one(self, selector):
        return self.wait(lambda: self.all(selector), f"nothing is {selector}")[0]

    def text(self, selector="body"):
        return self.run("return document.querySelector(arguments[0]).innerText", selector)

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def wait(self, condition, why="what was waited for did not come"):
        return WebDriverWait(self.driver, 15, poll_frequency=0.05).until(lambda _: condition(), why)

    def drawn(self):
        """Waits until every chart that is near the window has its drawing."""
        self.wait(lambda: self.run("return [...document.querySelectorAll('.plot')].every((p) => p.querySelector("
                                   "'svg, p') || p.getBoundingClientRect().top > innerHeight + 200)"), "no charts")

    def colours(self, selector):
        """How many pixels of each colour an element shows."""
        box = self.run("const e = document.querySelector(arguments[0]); e.scrollIntoView({block: 'center'});"
                       "const b = e.getBoundingClientRect();"
                       "return [b.x + scrollX, b.y + scrollY, b.width, b.height]", selector)
        picture = self.picture(dict(zip(("x", "y", "width", "height"), box), scale=1))
        return {"#%02x%02x%02x" % colour[:3]: count for count, colour in picture.getcolors(1 << 20)}

    def picture(self, clip=None):
        if not clip:
            size = self.cdp("Page.getLayoutMetrics")["cssContentSize"]
            clip = {"x": 0, "y": 0, "width": size["width"], "height": size["height"], "scale": 1}
        data = self.cdp("Page.captureScreenshot", format="png", captureBeyondViewport=True, clip=clip)["data"]
        return Image.open(io.BytesIO(base64.b64decode(data))).convert("RGB")

    def network(self):
        """What was asked for since the last call: (address, bytes over the wire)."""
        asked, sizes = {}, {}
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                asked[message["params"]["requestId"]] = message["params"]["request"]["url"]
            elif message["method"] == "Network.loadingFinished":
                sizes[message["params"]["requestId"]] = message["params"]["encodedDataLength"]
        found = [(url, sizes.get(number, 0)) for number, url in asked.items()]
        self.requests += [url for url, _ in found]
        return found

    def complaints(self):
        return [entry["message"] for entry in self.driver.get_log("browser")
                if entry["level"] in ("SEVERE", "WARNING")]
