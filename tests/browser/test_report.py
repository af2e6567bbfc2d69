"""A report as a reader has it, and one of a folder whose names try to do harm."""

import os
import subprocess
import urllib.request

from testcase import BIN, BrowserTest, in_each_browser

TITLES = "[...document.querySelectorAll('#DropDownHotspot h2')].map(e => e.firstChild.firstChild.nextSibling.data.trim())"
OPEN = "[...document.querySelectorAll('#DropDownText')].map(e => e.offsetHeight > 0)"
NAMES = "[...document.querySelectorAll('.files td:first-child')].map(e => e.textContent)"
SHOWN = "[...document.querySelectorAll('.treeMenuRow')].filter(e => e.offsetHeight).map(e => e.lastChild.textContent)"

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


@in_each_browser
class Report(BrowserTest):
    @classmethod
    def make_pages(cls):
        picture = (BIN.parents[2] / "html/assets/folder.gif").read_bytes()
        make(cls.folder, {"in/b.txt": b"12345", "in/a.PNG": b"no picture", "in/sub/deep/c.gif": picture, "in/sub/d.txt": b"1"})
        names = [name.encode() for name in HOSTILE] + BROKEN
        make(cls.folder, {b"bad/%b/%b.gif" % (name, name): picture for name in names})
        make(cls.folder, {b"bad/%b/script>/%b" % (name, name): b"" for name in names})
        make(cls.folder, {"many/%d/%05d.txt" % (i % 7, i): b"" for i in range(10000)})
        for name in ("in", "bad", "many"):
            subprocess.run([BIN / "qv", "report", cls.folder / name, "-o", cls.folder / (name + "-out"), "--title",
                            "<i>it's</i>"], check=True)

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
        self.browser.click("button", 0)
        self.check(OPEN, [True] * 4)
        self.browser.run("location.hash = ''")
        self.browser.click("button", 1)
        self.browser.reload()
        self.check(OPEN, [False] * 4)

    def test_orders_and_kinds(self):
        self.go("in-out/index.html")
        self.check(NAMES, ["a.PNG", "b.txt", "d.txt", "c.gif"])
        self.browser.point(".Glossary", 1)
        self.check("document.getElementById('qvPopup').textContent", "Plain text without any form.")
        self.browser.click(".navBar a", 1)
        self.browser.until("location.pathname.endsWith('/by-date.html')")
        self.check("document.querySelector('.clsSelected').textContent", "Date")
        self.check("[...document.querySelectorAll('.kinds tbody tr')].map(e => [...e.cells].map(c => c.textContent))",
                   [["GIF picture", "1", "209 bytes"], ["PNG picture", "1", "10 bytes"], ["Text", "2", "6 bytes"]])

    def test_ten_thousand_files_are_a_usable_page(self):
        self.go("many-out/by-size.html")
        self.check("document.querySelectorAll('.files tbody tr').length", 10000)
        self.browser.click("#DropDownHotspot", 6)
        self.browser.focus("[role=button]", 5)
        self.browser.press("Enter")
        self.check(OPEN, [True, False, False, False, False, True, True, False])

    def test_hostile_names_are_texts_and_nothing_else(self):
        self.go("bad-out/index.html")
        self.browser.run("window.harm = function () { window.harmed = true }")
        self.browser.click("button", 0)
        self.browser.run("document.querySelectorAll('[aria-expanded=false] .treeMenuTwist').forEach(e => e.click())")
        self.browser.run("document.querySelectorAll('body *').forEach(e => { for (const kind of ['mouseover', 'focusin', "
                         "'mouseout', 'keydown', 'error', 'load']) e.dispatchEvent(new Event(kind)) })")
        self.check("window.harmed", None)
        self.check("document.querySelectorAll('main i, main script, [onerror], [onload], [onmouseover*=harm]').length", 0)
        self.browser.until("[...document.querySelectorAll('.pictures img')].every(e => (e.loading = 'eager', e.naturalWidth == 16))")
        names = [visible(name) for name in [name.encode() for name in HOSTILE] + BROKEN]
        self.assertEqual(sorted(self.browser.value(SHOWN)), sorted(["bad"] + names + ["script>"] * len(names)))
        addresses = self.browser.value("[...document.querySelectorAll('.files a')].map(e => e.href)")
        self.assertEqual(len(addresses), 2 * len(names))
        for address in addresses:
            self.assertTrue(address.startswith(self.server.address + "bad/"), address)
            urllib.request.urlopen(address).close()
