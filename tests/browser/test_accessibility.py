"""Pages of every kind break no serious rule of axe-core, except where their markup is that for old browsers."""

import pathlib
import shutil
import subprocess

import accessibility
from testcase import BIN, BrowserTest, in_each_browser

ASSETS = pathlib.Path(__file__).parents[2] / "html/assets"
# By rule: the pages that may break it, and why.
EXCEPTIONS = {
    # Pictures of sections and bars have no text in the markup of old browsers. The support for those of today adds it.
    "image-alt": {"bar.html", "bars.html", "hostile.html", "section.html", "sections.html"},
}
OPEN_ALL = """
    document.querySelectorAll("[role=button][aria-expanded=false], [aria-expanded=false] .treeMenuTwist").forEach(
        element => element.click());
    document.querySelector(".Glossary")?.focus();"""


@in_each_browser
class Accessibility(BrowserTest):
    may_complain = True  # pages without the support find no old browser

    @classmethod
    def make_pages(cls):
        accessibility.script()
        for kind in ("pages", "charts"):
            subprocess.run([BIN / "write_samples", kind, cls.folder], check=True)
        assets = shutil.copytree(ASSETS, cls.folder / "assets")
        subprocess.run([BIN / "qv", "report", assets, "-o", cls.folder / "report"], check=True)

    def test_pages(self):
        pages = sorted(self.folder.glob("*.html")) + sorted(self.folder.glob("report/*.html"))
        self.assertGreater(len(pages), 16)
        for page in pages:
            with self.subTest(page.name):
                exceptions = [rule for rule, names in EXCEPTIONS.items() if page.name in names]
                self.go(str(page.relative_to(self.folder)))
                self.check_accessible(*exceptions, schemes=["light"])
                self.browser.run(OPEN_ALL)
                self.check_accessible(*exceptions, schemes=["dark"])
