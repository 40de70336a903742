#!/usr/bin/env python3
"""Pictures of the service's pages for the documents: screenshots.py PROGRAM FOLDER, taken by scripts/screenshots."""
import pathlib
import sys

from browser import Browser, Service
from generate_reports import Generator, drive, fill, midnight
from PIL import Image

USER = 4_711_000_000_000_001
SCREENS = {"desktop": (1280, 1000), "phone": (390, 844)}


def main():
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    # The same day on every machine, and the browser's clock does not show.
    until = midnight("2026-11-23")
    service = Service(program)
    browser = Browser(service.host)
    try:
        tests = list(Generator(1, USER, until).tests(1000, 100))
        for user in range(USER + 1, USER + 5):
            tests += Generator(1, user, until).tests(400, 200)
        assert fill(service.host, service.database, tests) == []
        for user in range(USER, USER + 5):
            for seed in (1, 2):
                part = drive(user % 7 + seed, until - seed * 86_400_000)
                service.api(user, f"tracks/{user * 10 + seed:032x}", "PUT", part)
        listed = service.api(USER, "tests?type=lte&location=Car&limit=10")["tests"]
        test = next(row["id"] for row in listed if int(row["test_id"]) % 4)  # one with delays under load
        pages = {"user": f"page=UserReport&userid={USER}", "test": f"page=Test&userid={USER}&test={test}",
                 "compare": f"page=Compare&userid={USER}&l_type=lte&r_type=5g", "statistics": None, "home": None}
        taken = {}
        for name, query in pages.items():
            for screen, (width, height) in SCREENS.items():
                for language in ("de", "en"):
                    for dark in (False, True):
                        browser.size(width, height, dark)
                        place = {"statistics": "/velometer/statistics?", "home": "/?"}.get(name)
                        browser.open((place or f"/velometer/Controller?{query}&") + "language=" + language)
                        taken[name, screen, language, dark] = picture = take(browser)
                        save(picture, folder / f"web-{name}-{screen}-{language}-{'dark' if dark else 'light'}.png")
        for language in ("de", "en"):
            save(overview(taken["user", "desktop", language, False], taken["user", "phone", language, True]),
                 folder / f"web-overview-{language}.png")
    finally:
        browser.close()
        service.stop()


def take(browser):
    """The page, after each part has been looked at."""
    height = browser.run("return document.documentElement.scrollHeight")
    for top in range(0, height, 600):
        browser.run("window.scrollTo(0, arguments[0])", top)
        browser.drawn()
    if browser.all("#map"):
        browser.wait(lambda: browser.all("#map canvas.leaflet-tile-loaded"))
    browser.run("window.scrollTo(0, 0)")
    picture = browser.picture()
    return picture.crop((0, 0, picture.width, min(picture.height, 2600 if picture.width > 600 else 3000)))


def overview(desk, hand, height=1400, gap=16):
    """A desk's and a hand's picture side by side: what the README shows."""
    together = Image.new("RGB", (desk.width + hand.width + 3 * gap, height + 2 * gap), "#3a4048")
    together.paste(desk.crop((0, 0, desk.width, height)), (gap, gap))
    together.paste(hand.crop((0, 0, hand.width, height)), (desk.width + 2 * gap, gap))
    return together


def save(picture, target):
    """With a palette of the colours that are seen most; the pages have few beside the edges of letters."""
    colours = sorted(picture.getcolors(1 << 24), reverse=True)[:256]
    palette = Image.new("P", (1, 1))
    palette.putpalette([part for _, colour in colours for part in colour])
    picture.quantize(palette=palette, dither=Image.Dither.NONE).save(target, optimize=True)
    print(target)


main()
