"""How long a page takes, in milliseconds: measure.py PAGE [ACTION], where the action is a script."""

import collections
import pathlib
import sys

# From the start of the navigation until the first contents are seen, until the page is loaded, and from the start of an
# action until the frame after the one that shows its effect has begun.
Times = collections.namedtuple("Times", "paint load action")

PAINT = "performance.getEntriesByName('first-contentful-paint')"
ACTION = """const done = arguments[0];
    requestAnimationFrame(() => {
        const start = performance.now();
        (function () { %s })();
        requestAnimationFrame(() => requestAnimationFrame(() => done(performance.now() - start)));
    });"""


def measure(browser, address, action="", rounds=3):
    """The least times of a number of rounds. An action is a script."""
    return Times(*map(min, zip(*(once(browser, address, action) for _ in range(rounds)))))


def once(browser, address, action):
    browser.go(address)
    browser.until(PAINT + ".length && performance.getEntriesByType('navigation')[0].loadEventEnd")
    paint, load = browser.value("[%s[0].startTime, performance.getEntriesByType('navigation')[0].loadEventEnd]" % PAINT)
    return paint, load, browser.wait(ACTION % action)


def main(page, action=""):
    from chromium import Chromium
    from firefox import Firefox
    for kind in (Chromium, Firefox):
        if kind.missing():
            continue
        browser = kind()
        try:
            times = measure(browser, pathlib.Path(page).resolve().as_uri(), action)
            print("%-10s" % kind.__name__, *("%s %.0f ms" % part for part in times._asdict().items()))
        finally:
            browser.stop()


if __name__ == "__main__":
    main(*sys.argv[1:])
