#!/usr/bin/env python3
"""The service's pages as people see them: in Chromium, against the real service and generated measurements."""
import copy
import csv
import datetime
import io
import pathlib
import re
import statistics
import sys
import unittest
import urllib.parse

from browser import Browser, Service, TileHost
from generate_reports import DAY, Generator, document, drive, fill, load_figures, midnight, post
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

OWNER, HOSTILE, LEAVER = 7_001_000_000_000_001, 7_001_000_000_000_002, 7_001_000_000_000_003
TODAY = midnight(datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d"))
PROGRAM = sys.argv.pop(1)
AUDIT = (pathlib.Path(__file__).parent / "audit.js").read_text()
#: Markup that would be seen by its element, and a script that would be seen by what it leaves.
MARKUP = "<b class='injected'>x</b><script>window.injected=1</script>\"'><img src=x onerror=window.injected=2>"


def page(name, user=OWNER, **parameters):
    return "/velometer/Controller?" + urllib.parse.urlencode(
        {"page": name, "userid": user, "language": "en"} | parameters)


def hostile_tests():
    for field in ("TestServer", "ConnectionType", "Location", "Network", "MNC", "MCC", "OS", "Platform", "Model",
                  "Manufacturer", "AppletVersion", "Log", "Phase"):
        test = next(Generator(1, HOSTILE, TODAY).tests(1, 3))
        test.number = len(field) * 100 + ord(field[1])
        test.text[field] = field + MARKUP
        yield test


def setUpModule():
    global service, browser, tests
    service = Service(PROGRAM, silent=["Sunrise"])
    tests = list(Generator(1, OWNER, TODAY).tests(300, 60))
    generated = [*copy.deepcopy(tests), *hostile_tests(), *Generator(2, LEAVER, TODAY).tests(12, 9)]
    assert fill(service.host, service.database, generated) == []
    browser = Browser(service.host)


def tearDownModule():
    browser.close()
    service.stop()


class PagesTest(unittest.TestCase):
    def setUp(self):
        browser.size(1280, 1000)

    def tearDown(self):
        self.assertEqual(browser.complaints(), [])
        browser.network()
        self.assertEqual([url for url in browser.requests if not url.startswith((f"http://{service.host}/", "data:",
                                                                                 "chrome:", "blob:"))], [])
        self.assertEqual(browser.driver.get_cookies(), [])

    def rows(self):
        return [row.text for row in browser.all("table.tests tbody tr")]

    def test_shows_summary_and_list_without_scripts(self):
        rates = [test.download.device_average() for test in tests if test.download.rates()]
        for language, title, caption in (("de-CH,de", "Ihre Messungen", "1 bis 50 von 300 Tests"),
                                         ("fr,en", "Your measurements", "1 to 50 of 300 tests")):
            address = page("UserReport").replace("&language=en", "")
            status, headers, text = service.get(address, {"Accept-Language": language})
            self.assertEqual(status, 200)
            for words in (title, caption, "%.1f</strong> <span class=\"unit\">Mbit/s" % (statistics.median(rates) / 1e6)):
                self.assertIn(words, text)
            self.assertEqual(text.count("<td role=\"cell\" class=\"when\">"), 50)
            policy = headers["Content-Security-Policy"]
            self.assertNotRegex(policy, "unsafe|\\*|http")
            self.assertEqual(headers["Referrer-Policy"], "no-referrer")
        for address, status in ((page("UserReport", 1), 404), (page("Nothing"), 404), (page("UserReport", sort="x"), 400),
                                (page("Test", test=999_999), 404), (page("UserReport", after="%"), 400)):
            self.assertEqual(service.get(address)[0], status, address)

    def test_assets_are_kept_for_good_under_their_hash(self):
        _, _, text = service.get(page("UserReport"))
        files = set(re.findall(r'(?:src|href)="(/velometer/assets/[^"]+)"', text))
        self.assertGreater(len(files), 5)
        for file in files:
            status, headers, plain = service.get(file)
            self.assertEqual((status, headers["Cache-Control"]), (200, "public, max-age=31536000, immutable"), file)
            self.assertGreater(len(plain), 100)
            old = re.sub("assets/[0-9a-f]+/", "assets/0000/", file)
            self.assertEqual(service.get(old)[1]["Cache-Control"], "no-store")
        self.assertEqual(service.get("/velometer/assets/x/../../etc/passwd")[0], 404)
        licences = service.get(next(file for file in files if file.endswith("licences.txt")))[2]
        for word in ("leaflet", "Agafonkin", "d3-scale", "Bostock", "markercluster"):
            self.assertIn(word, licences)

    def test_filters_stand_in_the_address_and_exports_follow_them(self):
        browser.open(page("UserReport"))
        for name, text in (("type", "Mobile (LTE)"), ("location", "Car"), ("operator", "Sunrise")):
            choice = browser.one(f"form.filters select[name={name}]")
            next(each for each in choice.find_elements("tag name", "option") if each.text == text).click()
        browser.one("form.filters button").click()
        browser.wait(lambda: "type=lte" in browser.driver.current_url)
        asked = dict(urllib.parse.parse_qsl(urllib.parse.urlsplit(browser.driver.current_url).query, True))
        self.assertEqual(asked, {"page": "UserReport", "language": "en", "userid": str(OWNER), "type": "lte",
                                 "operator": "228-02", "location": "Car"})
        wanted = [test for test in tests if (test.kind, test.location, test.operator[0]) == ("lte", "Car", "Sunrise")]
        self.assertGreater(len(wanted), 5)
        self.assertTrue(all("Mobile (LTE) · Car · Sunrise" in row for row in self.rows()))
        self.assertIn(f" of {len(wanted)} tests", browser.text("table.tests caption"))
        links = {link.get_attribute("textContent"): link.get_attribute("href").split(service.host)[1]
                 for link in browser.all("a[download]")}
        ids = {(str(test.series), str(test.number)) for test in wanted}
        rows = csv.DictReader(io.StringIO(service.get(links["CSV"])[2]))
        self.assertEqual({(row["series_id"], row["test_id"]) for row in rows}, ids)
        for name, mark in (("JSON", '"test_id"'), ("GeoJSON", '"Feature"'), ("GPX", "<wpt")):
            self.assertEqual(service.get(links[name])[2].count(mark), len(wanted), name)
        # Each chip leads to the address without it.
        next(chip for chip in browser.all(".chip") if "Car" in chip.text).click()
        browser.wait(lambda: "location" not in browser.driver.current_url)
        self.assertIn("operator=228-02", browser.driver.current_url)

    def test_start_page_tells_how_the_servers_are(self):
        browser.open("/?language=de")
        states = dict(row.text.split(f" {service.host.split(':')[0]}:")[0].split(" ● ")[0].split(" ○ ")[0:1] +
                      ["●" in row.text] for row in browser.all("tbody tr"))
        self.assertEqual(states, {"Dieser Server": True, "Swisscom": True, "Sunrise": False, "HSR": True,
                                  "IP-Plus Germany": True, "IP-Plus Italy": True, "IP-Plus New York": True})

    def test_sorts_and_turns_pages(self):
        browser.open(page("UserReport", type="wlan"))
        browser.one("thead th:nth-child(5) a").click()
        browser.one("th[aria-sort=descending]:nth-child(5)")
        seen = [self.rows()]
        while browser.all("a[rel=next]"):
            self.assertIn(f"{len(sum(seen, [])) - len(seen[-1]) + 1} to", browser.text("table.tests caption"))
            last = browser.one("table.tests")
            browser.run("arguments[0].click()", browser.one("a[rel=next]"))
            browser.wait(lambda: browser.one("table.tests") != last)
            seen.append(self.rows())
        rates = [float(re.search(r"([\d.]+) Mbit/s", row)[1]) for row in sum(seen, []) if "Mbit/s" in row]
        self.assertEqual(rates, sorted(rates, reverse=True))
        self.assertEqual(len(set(sum(seen, []))), sum(test.kind == "wlan" for test in tests))

    def test_draws_charts_and_map(self):
        for dark, lte, ground in ((False, "#0a66b0", "#dfe7e4"), (True, "#56b8ff", "#26323a")):
            browser.size(1280, 1000, dark)
            browser.open(page("UserReport"))
            browser.drawn()
            for chart in ("#time [data-metric=download] svg", "#time [data-metric=upload] svg", "#types svg"):
                browser.one(chart)
                self.assertGreater(browser.colours(chart).get(lte, 0), 60, chart)
            browser.one(".clump, .pin")
            browser.wait(lambda: browser.colours("#map").get(ground, 0) > 20_000, "no land on the map")
            self.assertEqual(sum(map(int, browser.run(
                "return [...document.querySelectorAll('.clump')].map((e) => e.textContent)"))) +
                len(browser.all(".pin")), len(tests))
            browser.run("document.getElementById('hours').scrollIntoView()")
            browser.one("#hours svg rect.box")
        grid = browser.all(".mapcard .tool")[2]
        before = browser.colours("#map")
        grid.click()
        browser.wait(lambda: len(browser.colours("#map")) > len(before) + 20, "no grid")

    def test_draws_tracks_for_their_owner_alone(self):
        part = drive(1, TODAY - DAY)
        service.api(OWNER, "tracks/" + "a" * 32, "PUT", part)
        service.api(OWNER, "tracks/" + "b" * 32, "PUT", {**part, "points": [], "ended_ms": None})
        browser.open(page("UserReport"))
        browser.wait(lambda: browser.all("#map[data-tracks='2']"))
        self.assertEqual(browser.text(".legend"), "Mobile (LTE)\nMobile (5G)\nMobile (UMTS)")
        rows = [row.text.replace("\n", " ") for row in browser.all("#tracks li")]
        self.assertEqual(len(rows), 2)
        self.assertIn("400 points · 7 min", rows[0] + rows[1])
        self.assertIn("0 points · not ended", rows[0] + rows[1])
        whole = next(row for row in browser.all("#tracks li") if "400 points" in row.text)
        whole.find_element("tag name", "button").click()
        before = browser.colours("#map")
        next(each for each in browser.all(".mapcard .tool") if each.text == "By signal").click()
        browser.wait(lambda: browser.text(".legend").startswith("from -85 dBm"))
        browser.wait(lambda: browser.colours("#map") != before, "the lines keep their colours")
        whole = next(row for row in browser.all("#tracks li") if "400 points" in row.text)
        link = next(each for each in whole.find_elements("tag name", "a") if each.text == "GPX").get_attribute("href")
        self.assertEqual(service.get(link.split(service.host)[1])[2].count("<trkpt"), 400)
        # Deleting asks once more.
        for count in (2, 1):
            button = browser.all("#tracks li button:last-child")[0]
            button.click()
            self.assertEqual((button.text, len(browser.all("#tracks li"))), ("Really delete?", count))
            button.click()
            browser.wait(lambda: len(browser.all("#tracks li")) == count - 1)
        self.assertEqual(service.api(OWNER, "tracks")["tracks"], [])

    def test_maps_stand_whatever_becomes_of_their_tiles(self):
        host = TileHost()
        mapped = Service(PROGRAM, options=["--tile-url", host.address + "/{z}/{x}/{y}.png?key=k",
                                           "--tile-attribution", "<b>Those of the tiles</b>"])
        own = browser.host
        try:
            fill(mapped.host, mapped.database, Generator(3, OWNER, TODAY).tests(20, 9))
            browser.host = mapped.host
            for mood in ("well", "failing", "silent"):
                host.mood = mood
                host.asked.clear()
                browser.cdp("Network.clearBrowserCache")
                browser.cdp("Page.navigate", url=f"http://{mapped.host}{page('UserReport')}")  # waits for no image
                browser.one(".clump, .pin")
                browser.wait(lambda: host.asked, "no tiles are asked for")
                colour = "#%02x%02x%02x" % TileHost.COLOUR if mood == "well" else "#dfe7e4"
                browser.wait(lambda: browser.colours("#map").get(colour, 0) > 20_000, mood)
                self.assertIn("<b>Those of the tiles</b>", browser.text("#map"))
                self.assertEqual({referrer for _, referrer in host.asked}, {f"http://{mapped.host}/"})
                self.assertRegex(host.asked[0][0], r"^/\d+/\d+/\d+\.png\?key=k$")
            # The policy names this host and no other.
            policy = mapped.get(page("UserReport"))[1]["Content-Security-Policy"]
            self.assertIn(f"; img-src 'self' data: {host.address}; ", policy)
            self.assertEqual(policy.count("http"), 1)
        finally:
            host.stop()
            browser.driver.get("about:blank")
            browser.host = own
            mapped.stop()
            browser.complaints()  # of the tiles that failed
            browser.network()
            browser.requests.clear()

    def test_zooms_into_finer_figures(self):
        browser.open(page("UserReport", type="wlan,lte"))
        browser.drawn()
        count = "return document.querySelectorAll('#time [data-metric=download] path.c-lte')[2].getAttribute('d').split('M').length"
        whole = browser.run("return document.querySelector('#time [data-metric=download] svg').getAttribute('aria-label')")
        plot = browser.one("#time [data-metric=download] .plot")
        browser.network()
        ActionChains(browser.driver).move_to_element_with_offset(plot, 40, 0).click_and_hold().move_by_offset(
            160, 0).release().perform()
        marks = browser.run(count)
        asked = []
        browser.wait(lambda: asked.extend(u for u, _ in browser.network() if "metric=download" in u and "from=" in u) or asked)
        query = urllib.parse.parse_qs(urllib.parse.urlsplit(asked[-1]).query)
        start, end = int(query["from"][0]), int(query["to"][0])
        self.assertLess(end - start, 30 * DAY)
        browser.wait(lambda: browser.run(count) > marks, "not more marks than before")
        inside = [test for test in tests if test.kind == "lte" and start <= test.time < end]
        self.assertGreaterEqual(len(inside), browser.run(count) - 1)
        browser.one("#time .plot svg").click()
        browser.all("#time .tool")[0].send_keys("0")
        browser.wait(lambda: whole == browser.run(
            "return document.querySelector('#time [data-metric=download] svg').getAttribute('aria-label')"))
        # The figures behind the drawing can be read as well.
        browser.run("document.querySelector('#time details.data').open = true")
        browser.wait(lambda: len(browser.all("#time .values tbody tr")) > 20)

    def test_one_test_with_its_note(self):
        row = service.api(OWNER, "tests?type=lte&location=Car&limit=1")["tests"][0]
        test = next(each for each in tests if (str(each.series), str(each.number)) == (row["series_id"], row["test_id"]))
        browser.open(page("Test", test=row["id"]))
        text = browser.text()
        self.assertIn(f"Test {test.series} / {test.number}", text)
        self.assertRegex(text, "Download: both agree within [0-3] %")
        self.assertIn(str(test.cell), text)
        for metric, colour in (("download", "#0a66b0"), ("upload", "#a05a00")):
            browser.one(f"#curves [data-metric={metric}] svg")
            self.assertGreater(browser.colours(f"#curves [data-metric={metric}] svg").get(colour, 0), 200)
        browser.one("textarea").send_keys("Beside the <i>lake</i> & \"church\"")
        browser.one("#note button").click()
        browser.wait(lambda: "Saved" in browser.text("#note"))
        browser.open(page("UserReport", type="lte", location="Car"))
        self.assertIn("Beside the <i>lake</i> & \"church\"", self.rows()[0])

    def test_tells_what_suffers_under_load(self):
        of = {(str(test.series), str(test.number)): test for test in tests}
        rows = [(row["id"], of[row["series_id"], row["test_id"]])
                for row in service.api(OWNER, "tests?type=lte&limit=50")["tests"]]
        for test, loads in ((test, load_figures(each)) for test, each in rows):
            upload, download, idle = (statistics.median(ns for ns in values if ns >= 0) / 1e6 for values in (
                loads["upload"]["rtt_ns"], loads["download"]["rtt_ns"], loads["idle_ns"])) if loads else (0, 0, 0)
            if upload - idle > 150 and upload < 800:
                break
        for language, sentence in (("de", "Anrufe und Spiele leiden, während etwas hochgeladen wird: +%d ms"),
                                   ("en", "Calls and games suffer while something uploads: +%d ms")):
            browser.open(page("Test", test=test, language=language))
            self.assertIn(sentence % round(upload - idle), browser.text("#load"))
        for line, median in ((2, download), (3, upload)):
            text = browser.text(f"#load tbody tr:nth-child({line})")
            self.assertRegex(text, rf"{median:.3g}.* ms.*\+{median - idle:.1f} ms.*bbr")
        browser.one("#curves [data-metric=upload] svg .thin.c-rtt")
        self.assertIn("RTT", browser.one("#curves [data-metric=upload] svg").get_attribute("aria-label"))
        self.assertIn("bbr", browser.text("#kernel"))
        # Of older clients and services nothing is known, and nothing is claimed.
        browser.open(page("Test", test=next(id for id, each in rows if not load_figures(each))))
        browser.one("#curves [data-metric=upload] svg")
        self.assertEqual(browser.all("#load, #kernel, #curves .thin"), [])

    def test_shares_show_nothing_of_who_measured(self):
        browser.open(page("UserReport", type="lte"))
        for positions in (True, False):
            browser.open(page("UserReport", type="lte"))
            browser.all("details.menu summary")[1].click()
            if positions:
                browser.one("#share input[name=positions]").click()
            browser.one("#share button").click()
            address = browser.one("#share output input").get_attribute("value").split(service.host)[1]
            status, _, text = service.get(address + "&language=en")
            self.assertEqual(status, 200)
            for secret in (str(OWNER), "OV-1", "Beside the", "127.0.0.1", "Orvak"):
                self.assertNotIn(secret, text)
            browser.open(address + "&language=en")
            self.assertEqual(len(browser.all("#map")), int(positions))
            self.assertEqual(browser.all("form#share, form#note, #delete-all"), [])
            browser.drawn()
            self.assertIn(f" of {sum(test.kind == 'lte' for test in tests)} tests", browser.text("table.tests caption"))
            browser.one("table.tests tbody a").click()
            browser.one("#curves svg")
            text = browser.driver.page_source
            for secret in (str(OWNER), "OV-1", "Orvak", "Download finished", "10.0.0.3"):
                self.assertNotIn(secret, text)
            self.assertEqual(bool(re.search(r"4[67]\.\d{4}", browser.run("return document.body.textContent"))), positions)
            self.assertEqual(service.get(address + "&type=wlan")[2].count("class=\"when\""), 0)
        browser.open(page("UserReport"))
        browser.all("details.menu summary")[1].click()
        browser.wait(lambda: len(browser.all(".shares li")) == 2)
        browser.one(".shares button").click()
        browser.wait(lambda: len(browser.all(".shares li")) == 1)
        self.assertEqual(service.get(address)[0], 404)

    def test_deletes_what_was_typed_for(self):
        browser.open(page("UserReport", LEAVER))
        browser.one("table.tests tbody a").click()
        for typed, gone in (("delete", False), ("DELETE", True)):
            if not browser.all("#delete-test[data-test]") or not browser.one("#delete-test").is_displayed():
                browser.all("details.menu summary")[1].click()
            field = browser.one("#delete-test input")
            field.clear()
            field.send_keys(typed)
            browser.one("#delete-test button").click()
            browser.wait(lambda: "what has to be typed" in browser.text("#delete-test output") if not gone
                         else "UserReport" in browser.driver.current_url)
        self.assertIn("11 tests", browser.text(".heading"))
        kind = service.api(LEAVER, "tests?limit=1")["tests"][0]["type"]
        left = [test["type"] for test in service.api(LEAVER, "tests")["tests"] if test["type"] != kind]
        browser.open(page("UserReport", LEAVER, type=kind))
        browser.all("details.menu summary")[2].click()
        browser.one("#delete-filtered input").send_keys("DELETE")
        browser.one("#delete-filtered button").click()
        browser.wait(lambda: "No measurement fits" in browser.text())
        self.assertEqual(service.api(LEAVER, "summary")["tests"], len(left))
        browser.all("details.menu summary")[2].click()
        browser.one("#delete-all input").send_keys(str(LEAVER))
        browser.one("#delete-all button").click()
        browser.wait(lambda: "has been deleted" in browser.text())
        self.assertEqual(service.get(page("UserReport", LEAVER))[0], 410)
        self.assertEqual(post(service.host, document(next(Generator(9, LEAVER, TODAY).tests(1, 2)), "8352")), 410)
        browser.complaints()  # the browser tells of the 410 itself

    def test_markup_from_clients_is_text(self):
        listed = service.api(HOSTILE, "tests")["tests"]
        self.assertEqual(len(listed), 13)
        shown = ""
        for address in (page("UserReport", HOSTILE), page("Compare", HOSTILE),
                        *(page("Test", HOSTILE, test=row["id"]) for row in listed)):
            browser.open(address)
            browser.wait(lambda: browser.run("return document.readyState") == "complete")
            self.assertEqual(browser.all(".injected, img[src=x]"), [])
            self.assertIsNone(browser.run("return window.injected ?? null"))
            shown += browser.run("return document.body.textContent")
        for field in ("TestServer", "Location", "Network", "Platform", "Model", "Manufacturer", "Log", "Phase"):
            self.assertIn(field + MARKUP[:20], shown, field)

    def test_compares_two_sides(self):
        browser.open(page("Compare", l_type="wlan", r_type="lte"))
        medians = [service.api(OWNER, "summary?type=" + kind)["download"]["median"] / 1e6 for kind in ("wlan", "lte")]
        row = next(row.text for row in browser.all("table.compare tr") if row.text.startswith("Download"))
        for median in medians:
            self.assertIn("%.1f Mbit/s" % median, row)
        self.assertIn("%.0f %% worse" % (100 * (medians[1] - medians[0]) / medians[0]), row)
        browser.drawn()
        self.assertGreater(browser.colours("#compared svg").get("#a05a00", 0), 100)

    def test_keyboard_alone_reaches_everything(self):
        browser.open(page("UserReport"))
        browser.drawn()
        keys = ActionChains(browser.driver)
        keys.send_keys(Keys.TAB).perform()
        self.assertEqual(browser.driver.switch_to.active_element.text, "Skip to the content")
        ActionChains(browser.driver).send_keys(Keys.ENTER).perform()
        self.assertEqual(browser.driver.switch_to.active_element.get_attribute("id"), "main")
        reached = {}
        shown = "return document.querySelector('a[download]').checkVisibility()"
        for _ in range(60):
            ActionChains(browser.driver).send_keys(Keys.TAB).perform()
            active = browser.driver.switch_to.active_element
            name = (active.accessible_name or active.text).split("\n")[0]
            outline = browser.run("return getComputedStyle(arguments[0]).outlineStyle", active)
            self.assertNotEqual(outline, "none", name)
            reached[name] = active
            if name == "Export":
                active.send_keys(Keys.ENTER)
                self.assertTrue(browser.run(shown))
                active.send_keys(Keys.ESCAPE)
                self.assertFalse(browser.run(shown))
            if name == "Zoom in":
                active.send_keys("+")
                browser.wait(lambda: browser.run("return document.getElementById('time').dataset.period ?? ''") != "")
        for name in ("Share", "Delete", "Month", "Connection", "From", "Apply", "Zoom in", "Later", "Logarithmic"):
            self.assertIn(name, reached)

    def test_is_accessible_at_every_width(self):
        test = service.api(OWNER, "tests?limit=1")["tests"][0]["id"]
        for address in (page("UserReport"), page("Test", test=test), page("Compare", language="de"), "/?language=de",
                        page("UserReport", 1), "/velometer/statistics"):
            for width, dark in ((360, True), (1920, False)):
                browser.size(width, 900, dark)
                browser.open(address)
                browser.drawn()
                self.assertEqual(browser.run(AUDIT), [], f"{address} {width} {dark}")
            browser.complaints()  # of a page that is not found

    def test_is_light_over_the_wire(self):
        browser.network()
        browser.cdp("Network.enable")
        browser.cdp("Network.clearBrowserCache")
        browser.open(page("UserReport"))
        browser.drawn()
        browser.one(".clump, .pin")
        browser.run("document.getElementById('hours').scrollIntoView()")
        browser.one("#hours svg")
        loaded = [(url, size) for url, size in browser.network() if "/outline/" not in url]
        self.assertGreater(len(loaded), 12)
        self.assertLess(sum(size for _, size in loaded), 135_000, loaded)


if __name__ == "__main__":
    unittest.main(verbosity=2)
