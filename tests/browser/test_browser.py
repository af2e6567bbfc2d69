"""What the other tests rely on: that windows are fresh, errors are reported, and measures are true."""

from measure import measure
from testcase import BrowserTest, in_each_browser

BUSY = "for (const start = performance.now(); performance.now() < start + %d;);"
STATE = """<!DOCTYPE html><script>document.title = document.cookie + localStorage.kept + sessionStorage.kept;
document.cookie = "kept=1"; localStorage.kept = sessionStorage.kept = 2;
console.error("said"); setTimeout(() => { throw Error("thrown") });</script>"""


@in_each_browser
class Browsers(BrowserTest):
    may_complain = True

    @classmethod
    def make_pages(cls):
        cls.folder.joinpath("state.html").write_text(STATE)
        cls.folder.joinpath("busy.html").write_text(
            "<!DOCTYPE html><title>Busy</title><script>%s</script><p>Text"
            "<script>addEventListener('DOMContentLoaded', () => { %s })</script>" % (BUSY % 80, BUSY % 40))

    def test_new_window_resets_state_and_errors_are_reported_once(self):
        self.go("state.html")
        self.browser.renew()
        self.go("state.html")
        self.check("document.title", "undefinedundefined")
        self.browser.frames()
        errors = sorted(self.browser.errors(), key=lambda message: "said" in message)
        self.assertEqual(["thrown" in errors[0], "said" in errors[1], len(errors)], [True, True, 2])
        self.assertEqual(self.browser.errors(), [])

    def test_measures_slow_page(self):
        times = measure(self.browser, self.server.address + "busy.html", BUSY % 120, rounds=1)
        self.assertTrue(times.paint >= 80 and times.load >= 120 and times.action >= 120, times)
