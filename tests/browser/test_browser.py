"""What the other tests rely on: that browsers do and report what they are asked for, and that measures are true."""

import struct

from measure import measure
from testcase import BrowserTest, in_each_browser

BUSY = "for (const start = performance.now(); performance.now() < start + %d;);"
STATE = """<!DOCTYPE html><title>State</title><p>Text<noscript>Still</noscript><input><script>
document.title = document.cookie + (localStorage.kept || "") + (sessionStorage.kept || "");
document.cookie = "kept=1"; localStorage.kept = sessionStorage.kept = 2;
console.error("said"); setTimeout(() => { throw Error("thrown") });</script>"""


@in_each_browser
class Browsers(BrowserTest):
    may_complain = True

    @classmethod
    def make_pages(cls):
        cls.folder.joinpath("state.html").write_text(STATE)
        cls.folder.joinpath("busy.html").write_text(
            "<!DOCTYPE html><title>Busy</title><script>%s</script><button onclick='%s'>Go</button>"
            "<script>addEventListener('DOMContentLoaded', () => { %s })</script>" % (BUSY % 80, BUSY % 120, BUSY % 40))

    def test_what_a_page_leaves_ends_with_its_window(self):
        for is_reload, title in ((False, ""), (True, "kept=122"), (False, "")):
            if is_reload:
                self.browser.reload()
            else:
                self.browser.renew()
                self.go("state.html")
            self.check("document.title", title)
            self.assertEqual(self.browser.cookies(), {"kept": "1"})

    def test_errors_are_collected_once(self):
        self.go("state.html")
        self.browser.frames()
        errors = sorted(self.browser.errors(), key=lambda message: "said" in message)
        self.assertEqual(["thrown" in errors[0], "said" in errors[1], len(errors)], [True, True, 2])
        self.assertEqual(self.browser.errors(), [])

    def test_emulation_holds_for_its_window(self):
        query = "[innerWidth, innerHeight, matchMedia('(prefers-color-scheme: dark)').matches]"
        self.browser.resize(320, 480)
        self.browser.prefer("dark")
        self.browser.allow_scripts(False)
        self.go("state.html")
        self.check(query, [320, 480, True])
        self.check("[document.title, document.querySelector('noscript').offsetHeight > 0]", ["State", True])
        self.assertEqual(struct.unpack(">8x4x4xII", self.browser.screenshot()[:24]), (320, 480))
        self.browser.renew()
        self.go("state.html")
        self.check("document.title", "")
        self.browser.prefer("light")
        self.assertNotEqual(self.browser.value(query), [320, 480, True])

    def test_keys_and_paper(self):
        self.go("state.html")
        self.browser.click("input")
        self.browser.press("a", "Shift+b", "+", "Space", "Shift+Left", "c")
        self.check("document.querySelector('input').value", "aB+c")
        paper = self.browser.pdf()
        self.assertEqual((paper[:5], paper.rstrip()[-5:]), (b"%PDF-", b"%%EOF"))

    def test_what_is_slow_is_found_slow(self):
        page = self.server.address + "busy.html"
        for action in (BUSY % 120, lambda: self.browser.click("button")):
            times = measure(self.browser, page, action, rounds=1)
            self.assertGreaterEqual(times.paint, 80)
            self.assertGreaterEqual(times.load, 120)
            self.assertGreaterEqual(times.action, 120)
