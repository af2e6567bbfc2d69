"""Charts in a browser: labels stay inside and apart, in both colour schemes, and nothing runs."""

import subprocess

from testcase import BIN, BrowserTest, in_each_browser

BOXES = """
const svg = document.querySelector('svg'), all = svg.getBoundingClientRect();
return [[all.left, all.top, all.right, all.bottom]].concat([...svg.querySelectorAll('text')].map(e => {
    const r = e.getBoundingClientRect(); return [r.left, r.top, r.right, r.bottom, e.textContent]; }));
"""
SCHEMES = {"light": "rgb(255, 255, 255)", "dark": "rgb(23, 25, 29)"}


def meet(a, b):
    # Boxes of lines have room for accents above capitals, which none of these texts uses to the last pixel.
    return a[0] < b[2] - 1 and b[0] < a[2] - 1 and a[1] < b[3] - 3 and b[1] < a[3] - 3


@in_each_browser
class Charts(BrowserTest):
    @classmethod
    def make_pages(cls):
        subprocess.run([BIN / "write_samples", "charts", cls.folder], check=True)

    def test_labels_stay_inside_without_overlap(self):
        files = sorted(self.folder.glob("*.svg"))
        self.assertGreater(len(files), 20)
        for file in files:
            self.browser.go(file.as_uri())
            (left, top, right, bottom), *texts = self.browser.run(BOXES)
            for i, text in enumerate(texts):
                inside = left <= text[0] <= text[2] <= right and top <= text[1] <= text[3] <= bottom
                self.assertTrue(inside, (file.name, text))
                for other in texts[:i]:
                    self.assertFalse(meet(text, other), (file.name, text, other))

    def test_charts_do_not_affect_page_style(self):
        for scheme, background in SCHEMES.items():
            self.go("charts.html")
            self.browser.prefer(scheme)
            with self.subTest(scheme):
                self.check("getComputedStyle(document.querySelector('svg .back')).fill", background)
                self.check("getComputedStyle(document.querySelector('#outside')).color", "rgb(0, 0, 0)")
                self.check("new Set([...document.querySelectorAll('.f0')].map(e => getComputedStyle(e).fill)).size", 1)
        ids = self.browser.value("[...document.querySelectorAll('[id]')].map(e => e.id)")
        self.assertEqual(len(ids), len(set(ids)))
        self.check("document.querySelectorAll('script, [onload]').length", 0)
        counts = self.browser.value("['svg', 'caption'].map(name => document.querySelectorAll(name).length)")
        self.assertLessEqual(*counts)
        self.check_no_harm("charts.html")

    def test_charts_shrink_on_narrow_pages(self):
        self.browser.resize(320, 600)
        self.go("charts.html")
        self.assertLessEqual(self.browser.value("document.documentElement.scrollWidth"), 320)
        self.assertLess(self.browser.value("document.querySelector('svg').getBoundingClientRect().height"), 200)
