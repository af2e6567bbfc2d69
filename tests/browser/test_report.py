"""A report as a reader has it, and one of a folder whose names try to do harm."""

import os
import shutil
import subprocess
import unittest
import urllib.request

from testcase import BIN, BrowserTest, in_each_browser

TITLES = "[...document.querySelectorAll('#DropDownHotspot small')].map(e => e.previousSibling.data.trim())"
OPEN = "[...document.querySelectorAll('#DropDownText')].map(e => e.style.display != 'none')"
NAMES = "[...document.querySelectorAll('%s td:first-child > a:first-child')].map(e => e.textContent)"
SHOWN = ("[...document.querySelectorAll('.treeMenuRow')].filter(e => e.offsetHeight)"
         ".map(e => e.querySelector('.treeMenuNote').previousSibling.textContent)")
# Builds every table of an open section, wherever it is.
BUILD = "dispatchEvent(new Event('beforeprint'))"
FILTER = "(i => { i.value = arguments[0]; i.dispatchEvent(new Event('input')) })(document.getElementById('filter'))"
STATUS = "document.querySelector('#found [role=status]').textContent"
OPEN_ALL, CLOSE_ALL = ".all button:first-child", ".all button:last-child"

# Names of folders and files. Most would call the function `harm` if they got through somewhere.
HOSTILE = ["<script>harm()<", "'+harm()+'", '"onmouseover="harm()', "<img src=x onerror=harm()>",
           "');harm();('", "&#39;);harm();(&#39;", "&lt;script&gt;", "javascript:harm()", "-->]]><!--", "a\nb\rc\td",
           "\u2028harm()", "\x01\x7f", "%27%3Cscript%3E", "${harm()}", "__proto__", "constructor", " ", "#x?y=z",
           "\\'+harm()+\\'", "\\", "\u202egnp.harm", " blank "]
BROKEN = [b"\xff\xc3(", b"\xe2\x80"]


def visible(name):
    """A name as a page shows it: what would not be seen is escaped, blanks at the ends are marked."""
    def shown(character):
        code = ord(character)
        if 0xDC80 <= code <= 0xDCFF:
            return "\\%03o" % (code - 0xDC00)
        if code < 0x20 or 0x7F <= code < 0xA0:
            return {"\n": "\\n", "\r": "\\r", "\t": "\\t"}.get(character, "\\%03o" % code)
        return "\\u%04X" % code if code in (0x2028, 0x202E) else character

    text = name.decode(errors="surrogateescape")
    blanks = len(text) - len(text.lstrip(" ")), len(text) - len(text.rstrip(" "))
    inner = text.strip(" ")
    marks = [count * "\u2423" for count in blanks] if inner else [len(text) * "\u2423", ""]
    return marks[0] + "".join(map(shown, inner)) + marks[1]


def make(folder, files):
    for name, contents in files.items():
        path = os.path.join(os.fsencode(folder), name if isinstance(name, bytes) else name.encode())
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(contents)


def report(folder, name, *options):
    subprocess.run([BIN / "qv", "report", folder / name, "-o", folder / (name + "-out"), *options], check=True)


@in_each_browser
class Report(BrowserTest):
    @classmethod
    def make_pages(cls):
        picture = (BIN.parents[2] / "html/assets/folder.gif").read_bytes()
        make(cls.folder, {"in/b.txt": b"12345", "in/a.PNG": b"no picture", "in/sub/deep/c.gif": picture, "in/sub/d.txt": b"1",
                          "size/a.txt": b"12345", "size/data-v=9.txt": b"1", "size/e.txt": b"1234567"})
        names = [name.encode() for name in HOSTILE] + BROKEN
        make(cls.folder, {b"bad/%b/%b.gif" % (name, name): picture for name in names})
        make(cls.folder, {b"bad/%b/script>/%b" % (name, name): b"" for name in names})
        make(cls.folder, {"long/%04d.txt" % i: b"x" * (i * 7 % 1000) for i in range(1000)})
        make(cls.folder, {"wide/%03d/%d.txt" % (i, j): b"" for i in range(1200) for j in range(2)})
        for name in ("in", "bad"):
            report(cls.folder, name, "--title", "<i>it's</i>")
        for name in ("long", "wide", "size"):
            report(cls.folder, name)

    def see_files(self):
        self.browser.run("document.getElementById('folders').scrollIntoView()")
        self.browser.until("document.querySelectorAll('.files tbody a').length")

    def filter(self, text):
        self.browser.run(FILTER, text)
        self.browser.frames()

    def test_folders_open_and_lead_to_their_files(self):
        self.go("in-out/index.html")
        self.check("[document.title, document.querySelector('h1').textContent]", ["<i>it's</i>"] * 2)
        self.check(TITLES, [str(self.folder / "in"), "sub", "sub/deep", "All kinds of files"])
        self.check(OPEN, [True, False, False, False])
        self.check(SHOWN, ["in", "sub"])
        self.browser.click(".treeMenuTwist", 1)
        self.browser.click(".treeMenuRow a", 2)
        self.browser.until(OPEN + "[2]")
        self.browser.until("document.querySelector('.pictures img[src$=gif]').naturalWidth == 16")
        self.browser.click("#DropDownHotspot", 0)
        self.browser.reload()
        self.check(OPEN, [False, False, True, False])
        self.check(SHOWN, ["in", "sub", "deep"])
        self.browser.click(OPEN_ALL)
        self.check(OPEN, [True] * 4)
        self.browser.run("location.hash = ''")
        self.browser.click(CLOSE_ALL)
        self.browser.reload()
        self.check(OPEN, [False] * 4)

    def test_columns_sort_and_file_types_have_descriptions(self):
        self.go("in-out/index.html")
        self.browser.click(OPEN_ALL)
        self.browser.run(BUILD)
        self.check(NAMES % ".files", ["a.PNG", "b.txt", "d.txt", "c.gif"])
        for column, names, sort in ((2, ["a.PNG", "b.txt"], "descending"), (2, ["b.txt", "a.PNG"], "ascending"),
                                    (1, ["a.PNG", "b.txt"], "ascending"), (0, ["a.PNG", "b.txt"], "ascending"),
                                    (0, ["b.txt", "a.PNG"], "descending")):
            self.browser.click(".files th button", column)
            self.check("(%s).slice(0, 2)" % NAMES % ".files", names)
            self.check("document.querySelectorAll('.files th')[%d].ariaSort" % column, sort)
            self.check("document.activeElement == document.querySelectorAll('.files th button')[%d]" % column, True)
        self.check(OPEN, [True] * 4)
        self.browser.point(".files .Glossary", 0)
        self.check("document.getElementById('qvPopup').textContent", "Plain text without formatting.")
        self.check("[...document.querySelectorAll('.kinds tbody tr')].map(e => [...e.cells].map(c => c.textContent.trim()))",
                   [["GIF picture", "1", "209 bytes"], ["PNG picture", "1", "10 bytes"], ["Text", "2", "6 bytes"]])

    def test_filter_updates_while_typing(self):
        self.go("in-out/index.html")
        self.browser.focus("#filter")
        for key, names in (("t", ["b.txt", "d.txt"]), ("x", ["b.txt", "d.txt"]), (" ", ["b.txt", "d.txt"]), ("D", ["d.txt"])):
            self.browser.press(key)
            self.browser.frames()
            self.check(NAMES % "#found", names)
        self.check(STATUS, "1 of 4 files")
        self.browser.click("#found .in")
        self.browser.until(OPEN + "[1] && !document.getElementById('filter').value")
        self.check("document.querySelector('#found').offsetHeight", 0)
        self.filter("nothing")
        self.check(STATUS, "0 of 4 files")
        self.browser.focus("#filter")
        self.browser.press("Escape")
        self.check(STATUS, "")

    def test_menu_supports_type_ahead(self):
        self.go("wide-out/index.html")
        self.browser.focus(".treeMenuDefault li")
        self.browser.press("1", "1", "5")
        self.check("document.activeElement.treeNode.text", "115")

    def test_names_do_not_affect_sorting_by_size(self):
        self.go("size-out/index.html")
        self.browser.click(OPEN_ALL)
        self.see_files()
        self.browser.click(".files th button", 2)
        self.check(NAMES % ".files", ["e.txt", "a.txt", "data-v=9.txt"])

    def test_long_tables_render_visible_rows_only(self):
        self.go("long-out/index.html")
        self.see_files()
        self.assertLess(self.browser.value("document.querySelectorAll('.files tbody a').length"), 1000)
        self.check("document.querySelector('.files').getAttribute('aria-rowcount')", "1001")
        self.browser.run("scrollTo(0, document.body.scrollHeight)")
        self.browser.until("[...document.querySelectorAll('.files tbody a')].at(-1).textContent == '0999.txt'")
        self.check("[...document.querySelectorAll('.files tbody tr')].at(-1).getAttribute('aria-rowindex')", "1001")
        self.browser.click(CLOSE_ALL)
        self.check("document.querySelectorAll('.files').length", 0)

    def test_open_sections_persist_without_cookie(self):
        self.go("wide-out/index.html")
        self.browser.click(OPEN_ALL)
        self.browser.until("!(%s).includes(false)" % OPEN)
        self.browser.reload()
        self.browser.until("!(%s).includes(false)" % OPEN)
        self.assertEqual(self.browser.cookies(), {})
        self.browser.click(CLOSE_ALL)
        self.browser.until("!(%s).includes(true)" % OPEN)
        self.browser.run("document.querySelector('#DropDownHotspot').click()")
        self.browser.reload()
        self.check("(%s).indexOf(true)" % OPEN, 0)
        self.assertEqual(len(self.browser.cookies()), 1)

    def test_complete_without_scripts(self):
        self.browser.allow_scripts(False)
        self.go("in-out/index.html")
        self.check(NAMES % ".files", ["a.PNG", "b.txt", "d.txt", "c.gif"])
        self.check("[...document.querySelectorAll('#DropDownText')].map(e => getComputedStyle(e).display)", ["block"] * 4)
        self.check("[...document.querySelectorAll('.tools, .folders')].some(e => e.offsetHeight)", False)

    def test_narrow_screens_have_room_for_names(self):
        for width in (320, 390):
            self.browser.resize(width, 700)
            self.go("long-out/index.html")
            self.see_files()
            self.check("document.documentElement.scrollWidth - document.documentElement.clientWidth", 0)
            self.assertGreater(self.browser.value("document.querySelector('.files td').offsetWidth"), width * 0.3)

    @unittest.skipUnless(shutil.which("pdftotext"), "no pdftotext")
    def test_print_has_all_columns_and_no_orphaned_titles(self):
        self.go("wide-out/index.html")
        self.browser.run("[...document.querySelectorAll('#DropDownSection')].slice(0, 120).forEach(showSection)")
        text = subprocess.run(["pdftotext", "-layout", "-", "-"], input=self.browser.pdf(), capture_output=True, check=True)
        pages = [page.strip().splitlines() for page in text.stdout.decode().split("\f") if page.strip()]
        self.assertGreater(len(pages), 3)
        self.assertRegex(pages[1][-1], r"^ *1\.txt +Text +0 bytes +\S+ \S+ +00000000$")
        for page in pages[:5]:
            self.assertRegex(page[-1], r"^ *1\.txt")

    def test_report_is_accessible(self):
        self.go("in-out/index.html")
        self.browser.click(OPEN_ALL)
        self.browser.frames()
        self.check_accessible()
        self.filter("t")
        self.check_accessible()

    def test_actions_take_linear_time(self):
        for size in (300, 3000):
            name = "grow%d" % size
            make(self.folder, {"%s/%d/%d.txt" % (name, i % (size // 10), i): b"" for i in range(size)})
            report(self.folder, name)
        for action in ("showSection(document.querySelectorAll('#DropDownSection')[1])", "report.setAll(true)",
                       FILTER.replace("arguments[0]", "'1'")):
            self.check_growth("grow300-out/index.html", "grow3000-out/index.html", action)

    def test_hostile_names_are_escaped(self):
        self.check_no_harm("bad-out/index.html")
        self.go("bad-out/index.html")
        self.browser.click(OPEN_ALL)
        self.browser.run(BUILD)
        self.check("document.querySelectorAll('main i, main script, [onerror], [onload], [onmouseover*=harm]').length", 0)
        self.browser.run("document.querySelectorAll('[aria-expanded=false] .treeMenuTwist').forEach(e => e.click())")
        self.browser.until("[...document.querySelectorAll('.pictures img')].every(e => (e.loading = 'eager', e.naturalWidth == 16))")
        names = [visible(name) for name in [name.encode() for name in HOSTILE] + BROKEN]
        self.assertEqual(sorted(self.browser.value(SHOWN)), sorted(["bad"] + names + ["script>"] * len(names)))
        # Tables far from the window are dropped at any time.
        links = "[...document.querySelectorAll('.files td:first-child a')].map(e => e.href)"
        addresses = self.browser.value("(%s, %s)" % (BUILD, links))
        self.assertEqual(len(addresses), 2 * len(names))
        for address in addresses:
            self.assertTrue(address.startswith(self.server.address + "bad/"), address)
            urllib.request.urlopen(address).close()
        self.filter("harm")
        self.assertGreater(self.browser.value("document.querySelectorAll('#found .in').length"), 10)
        self.check("document.querySelectorAll('#found :is(i, img, script)').length", 0)
