"""Prints the links of a site that lead nowhere: links.py FOLDER

Checks the links of every page, and those of the tree beside the pages, to files of the site and to anchors in them. Exits
with status 1 if there are any.
"""

import html.parser
import pathlib
import posixpath
import re
import sys
import urllib.parse


# Doxygen links to the summary of private nested classes, which it omits.
OMITTED = {"nested-classes"}


class Page(html.parser.HTMLParser):
    """The links and anchors of a page."""

    def __init__(self, text):
        super().__init__()
        self.links, self.anchors = set(), {"", *OMITTED}
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src"):
                self.links.add(value or "")
            elif name == "id" or (name == "name" and tag == "a"):
                self.anchors.add(value)


def dead_links(site):
    """Yields the pages and the links of a dictionary of texts by name; only pages, scripts and styles have texts."""
    pages = {name: Page(text) for name, text in site.items() if text is not None and name.endswith(".html")}
    links = {name: page.links for name, page in pages.items()}
    links |= {name: set(re.findall(r'^ *\[ "[^"]*", "([^"]+)"', site[name], re.M))
              for name in site if name.endswith("navtreedata.js")}
    for name, targets in sorted(links.items()):
        for link in sorted(targets):
            target = urllib.parse.urlsplit(link)
            if target.scheme or target.netloc:
                continue
            path = posixpath.normpath(posixpath.join(posixpath.dirname(name), urllib.parse.unquote(target.path))) \
                if target.path else name
            known = pages[path].anchors if path in pages else {""} if path in site else ()
            if urllib.parse.unquote(target.fragment) not in known:
                yield name, link


def main(folder):
    root = pathlib.Path(folder)
    site = {path.relative_to(root).as_posix(): path.read_text() if path.suffix in (".html", ".js") else None
            for path in root.rglob("*") if path.is_file()}
    dead = [f"{name}: {link} leads nowhere" for name, link in dead_links(site)]
    print(*dead, f"{len(site)} files, {len(dead)} dead links", sep="\n")
    return 1 if dead or not site else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
