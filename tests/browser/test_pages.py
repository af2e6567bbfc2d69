"""The sample pages, each with and without the support for browsers of today."""

import pathlib
import shutil
import subprocess

from testcase import BIN, BrowserTest, in_each_browser

OPEN = "[...document.querySelectorAll('#DropDownText')].map(e => getComputedStyle(e).display != 'none')"
SAID = "[...document.querySelectorAll('[role=button]')].map(e => e.getAttribute('aria-expanded') == 'true')"
PICTURES = "[...document.querySelectorAll('#DropDownImage')].map(e => e.src.replace(/.*\\//, ''))"
BARS = "[...document.querySelectorAll('#NavMenu')].map(e => getComputedStyle(e.tBodies[1]).display != 'none')"
POPUP = "document.getElementById('qvPopup')"
MODES = ("", "strict/")


class SamplePages(BrowserTest):
    @classmethod
    def make_pages(cls):
        subprocess.run([BIN / "write_samples", "pages", cls.folder], check=True)
        assets = pathlib.Path(__file__).parents[2] / "html/assets"
        shutil.copytree(assets, cls.folder / "assets")

    def check_sections(self, expected):
        self.browser.until("JSON.stringify(%s) == JSON.stringify(%s)" % (SAID, OPEN))
        self.check(OPEN, expected)
        self.check(PICTURES, ["open.gif" if e else "closed.gif" for e in expected])
        self.browser.until("[...document.images].every(e => e.naturalWidth == 16)")


@in_each_browser
class Today(SamplePages):
    def open_sections(self, address):
        self.browser.go(address)
        self.check_sections([False, False, False])
        self.browser.click("#DropDownHotspot", 1)
        self.check_sections([False, True, False])
        self.browser.focus("[role=button]", 0)
        self.browser.press("Enter", "Tab", "Tab", "Space")
        self.check_sections([True, True, True])
        self.browser.click("#DropDownHotspot h2", 0)
        self.browser.reload()
        self.check_sections([False, True, True])

    def test_sections_open_and_remember(self):
        for mode in MODES:
            with self.subTest(mode):
                self.open_sections(self.server.address + mode + "sections-today.html")
                self.assertIn("1 2", self.browser.value("document.cookie"))

    def test_sections_persist_without_cookie(self):
        self.open_sections((self.folder / "sections-today.html").as_uri())
        shutil.copytree(self.folder, self.folder / "a;b", dirs_exist_ok=True, ignore=shutil.ignore_patterns("a;b"))
        self.open_sections(self.server.address + "a;b/sections-today.html")

    def test_cookies_stay_within_server_limit(self):
        self.go("sections-today.html")
        self.browser.run("for (let i = 0; i < 9; i++) document.cookie = 'own' + i + '=' + 'x'.repeat(220)")
        self.open_sections(self.server.address + "sections-today.html")
        self.assertEqual(set(self.browser.cookies()), {"own%d" % i for i in range(9)})

    def test_a_single_section(self):
        self.go("section-today.html")
        self.browser.click("#DropDownHotspot")
        self.browser.reload()
        self.check_sections([True])
        self.browser.click("#DropDownImage")
        self.browser.reload()
        self.check_sections([False])

    def test_a_link_opens_its_section(self):
        self.go("sections-today.html#two")
        self.check_sections([False, True, False])
        self.browser.run("location.hash = 'three'")
        self.browser.until(OPEN + "[2]")
        self.check_sections([False, True, True])

    def check_popup(self, text, x, y):
        self.check("getComputedStyle(%s).visibility" % POPUP, "visible")
        self.check(POPUP + ".textContent", text)
        box = self.browser.value(POPUP + ".getBoundingClientRect()")
        self.assertEqual((round(box["left"]), round(box["top"])), (x, y))
        inside = "(r => r.right <= innerWidth && r.bottom <= innerHeight)(%s.getBoundingClientRect())" % POPUP
        self.check(inside, True)

    def test_popups_stay_beside_the_pointer_and_in_the_window(self):
        for mode in MODES:
            with self.subTest(mode):
                self.go(mode + "popups-today.html")
                spots = self.browser.value("[...document.querySelectorAll('.Glossary')].map(e => (r => [Math.round("
                                           "r.x + 2), Math.round(r.y + 2)])(e.getBoundingClientRect()))")
                self.browser.point_at(*spots[1])
                self.check_popup("it's <b>", spots[1][0] + 10, spots[1][1] + 10)
                self.browser.point_at(spots[1][0] + 1, spots[1][1])
                self.check_popup("it's <b>", spots[1][0] + 11, spots[1][1] + 10)
                self.browser.point_at(*spots[0])
                self.check_popup("\"A\\pet\"of \u00a0 ours", spots[0][0] + 10, spots[0][1] + 10)
                self.browser.point_at(*spots[4])
                width, height = self.browser.value("[%s.offsetWidth, %s.offsetHeight]" % (POPUP, POPUP))
                edge = self.browser.value("document.documentElement.clientWidth")
                self.check_popup("in the corner", edge - width, spots[4][1] - 10 - height)
                self.browser.point_at(1, 1)
                self.check("getComputedStyle(%s).visibility" % POPUP, "hidden")

    def test_popups_follow_the_focus(self):
        self.go("popups-today.html")
        self.browser.press("Tab")
        place = self.browser.value("document.activeElement.getBoundingClientRect()")
        self.check_popup("\"A\\pet\"of \u00a0 ours", round(place["x"]), round(place["bottom"] + 10))
        self.check("document.activeElement.getAttribute('aria-describedby')", "qvPopup")
        self.browser.press("Escape")
        self.check("getComputedStyle(%s).visibility" % POPUP, "hidden")
        self.browser.press("Tab")
        self.check("[getComputedStyle(%s).visibility, %s.textContent]" % (POPUP, POPUP), ["visible", "it's <b>"])

    def test_the_quick_menu_follows_the_scroll(self):
        for mode in MODES:
            with self.subTest(mode):
                self.go(mode + "quickmenu-today.html")
                self.browser.run("document.body.removeAttribute('onscroll'); scrollTo(0, 1200)")
                self.browser.until("document.getElementById('quickMenu').style.top == '1200px'")

    def check_bars(self, expected):
        self.browser.until("JSON.stringify(%s) == JSON.stringify(%s)" % (SAID, BARS))
        self.check(BARS, expected)
        self.check("[...document.querySelectorAll('#NavMenu img[id]')].map(e => e.src.replace(/.*\\//, ''))",
                   ["rolleddown.gif" if e else "rolledup.gif" for e in expected])
        self.check("document.querySelector('#sB1').offsetWidth > 0", not expected[0])

    def test_bars_roll_and_remember(self):
        for mode in MODES:
            with self.subTest(mode):
                self.go(mode + "bars-today.html")
                self.check_bars([False, False])
                self.browser.click("#NavMenu th", 0)
                self.browser.focus("[role=button]", 1)
                self.browser.press("Space")
                self.check_bars([True, True])
                self.browser.press("Enter")
                self.browser.reload()
                self.check_bars([True, False])
                self.browser.click("#NavMenu th", 0)

    def test_a_single_bar(self):
        self.go("bar-today.html")
        self.browser.click("#NavMenu th img")
        self.browser.reload()
        self.check_bars([True])
        self.check("[...document.querySelectorAll('[aria-current]')].map(e => e.textContent.trim())", ["<Size>"])

    SHOWN = ("[...document.querySelectorAll('[role=treeitem] > .treeMenuRow')].filter(e => e.offsetHeight)"
             ".map(e => e.textContent.replace(/[\\u25B8\\u25BE]/, ''))")

    def check_tree(self, focused, *shown):
        self.check(self.SHOWN, list(shown))
        self.check("document.activeElement.querySelector(':scope > .treeMenuRow')?.lastChild.textContent", focused)

    def test_trees_take_the_keyboard_and_the_pointer(self):
        cox = "Cox's <b>Orange</b>"
        self.go("tree-today.html")
        self.check_tree(None, "Fruit", "Apples", cox, "Pears")
        self.browser.until("document.images.length == 4 && [...document.images].every(e => e.naturalWidth == 16)")
        self.browser.press("Tab")
        self.check_tree(cox, "Fruit", "Apples", cox, "Pears")
        self.browser.press("Down", "Right", "Right")
        self.check_tree("Conference", "Fruit", "Apples", cox, "Pears", "Conference")
        self.browser.press("Home", "Down", "Left")
        self.check_tree("Apples", "Fruit", "Apples", "Pears", "Conference")
        self.check("[...document.querySelectorAll('li[aria-expanded]')].map(e => e.getAttribute('aria-expanded'))",
                   ["true", "false", "true"])
        self.browser.press("Left", "End", "Enter")
        self.browser.until("location.hash == '#conference'")
        self.browser.reload()
        self.check_tree(None, "Fruit", "Apples", "Pears", "Conference")
        self.browser.press("Tab")
        self.check_tree("Apples", "Fruit", "Apples", "Pears", "Conference")
        self.browser.click(".treeMenuTwist", 0)
        self.check_tree("Fruit", "Fruit")
        self.browser.click("li", 0)
        self.browser.click(".treeMenuRow a", 0)
        self.check_tree("Fruit", "Fruit", "Apples", "Pears", "Conference")
        self.check("location.hash", "#fruit")
        self.check("document.querySelectorAll('b').length", 0)

    def test_hostile_strings_display_unchanged(self):
        self.go("hostile-today.html")
        self.check("document.title", "<script>harm()</script>")
        articles = self.browser.value("[...document.querySelectorAll('article')].map(a => [a.dataset.text].concat(["
                                      "'h3', '#menuHeading', '.mnu a', 'th', '.clsSelected', 'article > p'].map(s => "
                                      "a.querySelector(s).textContent), (a.querySelector('.Glossary').onmouseover(), "
                                      "document.getElementById('qvPopup').textContent)))")
        self.assertEqual(len(articles), 14)
        for code, *shown in articles:
            text = bytes.fromhex(code).decode("cp1252").replace("\r", "").replace("\n", "")
            self.assertEqual(shown, [text, text, text, "\u00a0%s (%s)" % (text, text), text, text + " term", text])
        self.check("document.querySelectorAll('body script:not([language], [type]), [onclick*=harm]').length", 0)


@in_each_browser
class AsTheyWere(SamplePages):
    """Without the support, pages are for old browsers: in these their scripts report errors."""

    may_complain = True

    def test_hostile_strings_run_no_script(self):
        for page in ("hostile.html", "hostile-today.html"):
            self.check_no_harm(page)

    def test_legacy_browsers_are_unaffected(self):
        self.go("sections-today.html")
        support = self.browser.value("document.querySelectorAll('script')[1].textContent")
        self.go("sections.html")
        self.browser.run("Object.defineProperty(document, 'all', {value: {}}); eval(arguments[0])", support)
        self.check("['all' in document.body, 'pixelTop' in document.body.style, navigator.appName, "
                   "document.querySelectorAll('style').length]", [False, False, "Netscape", 0])
