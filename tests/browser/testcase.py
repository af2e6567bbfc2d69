"""Test cases that run in each browser."""

import atexit
import functools
import os
import pathlib
import shutil
import sys
import tempfile
import unittest

import accessibility
from chromium import Chromium
from firefox import Firefox
from measure import measure
from pages import Server

# Clicks every element and sends it the events that its attributes or the page's scripts handle. Links lead nowhere, but
# those that are scripts run.
EXERCISE = """
    addEventListener('click', event => {
        if (!/^javascript:/i.test(event.target.closest('a')?.href)) event.preventDefault();
    }, true);
    for (const element of document.querySelectorAll('*')) {
        const own = [...element.attributes].filter(a => a.name.startsWith('on')).map(a => a.name.slice(2));
        const kinds = new Set([...own, 'mouseover', 'mouseout', 'focusin', 'focusout', 'keydown', 'input', 'change']);
        for (const kind of kinds) element.dispatchEvent(new Event(kind, {bubbles: true}));
        element.click?.();
    }"""

BIN = pathlib.Path(os.environ["QV_BIN"])


@functools.cache
def running(kind):
    """The one browser of its kind, which ends with the tests."""
    browser = kind()
    atexit.register(browser.stop)
    return browser


class BrowserTest:
    """A folder of pages on a server, and a fresh window for every test. A page's errors fail the test. A class of tests
    is derived from this and decorated with `in_each_browser`."""

    may_complain = False

    @classmethod
    def setUpClass(cls):
        if missing := cls.kind.missing():
            raise unittest.SkipTest("no " + ", ".join(missing))
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.make_pages()
        cls.server, cls.browser = Server(cls.folder), running(cls.kind)
        cls.addClassCleanup(cls.server.stop)

    def setUp(self):
        self.browser.renew()

    def tearDown(self):
        if not self.may_complain:
            self.assertEqual(self.browser.errors(), [])

    def go(self, page):
        self.browser.go(self.server.address + page)

    def check(self, expression, expected):
        self.assertEqual(self.browser.value(expression), expected)

    def check_no_harm(self, page):
        """No script in a page's texts runs, regardless of what its reader does and how often it is opened. Each of
        those texts would call `harm()`."""
        self.server.harm.clear()
        self.go("watched/" + page)
        for _ in range(2):
            self.browser.run(EXERCISE)
            self.browser.frames()
            self.browser.reload()
        self.assertEqual(self.server.harm, [])
        self.browser.run("harm()")
        self.assertEqual(len(self.server.harm), 1)

    def check_accessible(self, *exceptions, schemes=("light", "dark")):
        """What the window shows breaks these serious rules of axe-core and no others, in these colour schemes."""
        for scheme in schemes:
            self.browser.prefer(scheme)
            found = accessibility.violations(self.browser)
            self.assertEqual(sorted(found), sorted(exceptions), (scheme, found))

    def check_growth(self, small, large, action="", factor=12):
        """A page with ten times the contents of another takes at most `factor` times as long by each measure. What is
        shorter than two frames counts as two."""
        before, after = (measure(self.browser, self.server.address + page, action) for page in (small, large))
        for name in before._fields:
            self.assertLess(getattr(after, name), factor * max(getattr(before, name), 1000 / 30), (name, before, after))


def in_each_browser(tests):
    """Makes test cases of a class, one for each browser, which are reported apart: TESTSInChromium, TESTSInFirefox."""
    module = sys.modules[tests.__module__]
    for kind in (Chromium, Firefox):
        name = tests.__name__ + "In" + kind.__name__
        setattr(module, name, type(name, (tests, unittest.TestCase), {"__module__": module.__name__, "kind": kind}))
    return tests
