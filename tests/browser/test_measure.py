"""The helper that measures pages: what it gives cannot be less than what a page is known to take."""

from measure import measure
from testcase import BrowserTest, in_each_browser

BUSY = "for (const start = performance.now(); performance.now() < start + %d;);"


@in_each_browser
class Measure(BrowserTest):
    @classmethod
    def make_pages(cls):
        cls.folder.joinpath("page.html").write_text(
            "<!DOCTYPE html><title>Busy</title><script>%s</script><button onclick='%s'>Go</button><script>addEventListener("
            "'DOMContentLoaded', () => { %s })</script>" % (BUSY % 80, BUSY % 120, BUSY % 40))

    def test_what_is_slow_is_found_slow(self):
        page = self.server.address + "page.html"
        for action in (BUSY % 120, lambda: self.browser.click("button")):
            times = measure(self.browser, page, action, rounds=1)
            self.assertGreaterEqual(times.paint, 80)
            self.assertGreaterEqual(times.load, 120)
            self.assertGreaterEqual(times.action, 120)
