"""Escaped texts and rebased links, as a browser reads them."""

import subprocess

from testcase import BIN, BrowserTest, in_each_browser

LINKS = "[...document.querySelectorAll('a[href], area[href], q[cite]')].map(e => e.href || e.cite)"


@in_each_browser
class Texts(BrowserTest):
    @classmethod
    def make_pages(cls):
        subprocess.run([BIN / "write_samples", "texts", cls.folder], check=True)

    def test_escaped_strings_display_unchanged(self):
        expected = [bytes.fromhex(line).decode() for line in (self.folder / "escaped.txt").read_text().splitlines()]
        self.assertGreater(len(expected), 30)
        self.go("escaped.html")
        self.check("window.texts", expected)
        self.check_no_harm("escaped.html")

    def test_rebased_links_resolve_to_same_urls(self):
        self.go("linked.html")
        places = self.browser.value(LINKS)
        self.assertGreater(len(places), 20)
        self.go("rebased.html")
        self.check(LINKS, places)
