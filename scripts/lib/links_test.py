"""Tests links.py with an artificial site."""

import unittest

import links

SITE = {
    "index.html": '<a href="a/b.html#here">b</a><a href="#top"><img src="a/c%20d.svg"><a href="https://example.org/x">',
    "a/b.html": '<h2 id="here"><a href="../index.html">up</a><a href="b.html">self</a><a href="../none.html#here">',
    "a/c d.svg": None,
    "navtreedata.js": '  [ "B", "a/b.html", [\n    [ "C", "@ref c", null ],\n    [ "D", null, null ],',
}
DEAD = [("a/b.html", "../none.html#here"), ("index.html", "#top"), ("navtreedata.js", "@ref c")]


class LinksTest(unittest.TestCase):
    def test_finds_missing_files_and_anchors(self):
        self.assertEqual(list(links.dead_links(SITE)), DEAD)


if __name__ == "__main__":
    unittest.main()
