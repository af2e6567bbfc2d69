"""Makes one C++ source of the examples in the documentation's pages.

    examples.py OUTPUT PAGE...

A page's example is its block ```cpp, a program; the block ```text behind it is what the program prints. Each example comes
into a namespace of its own, and becomes a test that runs it in a fresh folder and compares.
"""

import pathlib
import re
import sys

BLOCKS = re.compile(r"^```cpp\n(?P<code>.*?)^```\n.*?^```text\n(?P<output>.*?)^```\n", re.M | re.S)


def example(page):
    """The includes of a page's example, and the example as a test; neither for a page that has none."""
    text = page.read_text()
    blocks = text.count("```cpp\n")
    if blocks == 0:
        return [], ""
    match = BLOCKS.search(text)
    if blocks > 1 or not match:
        sys.exit(f"{page}: one example is due, with what it prints")
    includes = re.findall(r"^#include .*\n", match["code"], re.M)
    body, mains = re.subn(r"^int main\(\)", "static void Example()", re.sub(r"^#include .*$", "", match["code"], flags=re.M),
                          flags=re.M)
    if mains != 1:
        sys.exit(f"{page}: the example has no main")
    name = "".join(part.capitalize() for part in page.stem.lower().split("-"))
    line = text.count("\n", 0, match.start("code")) + 1
    return includes, (
        f'namespace {name}Page {{\n#line {line} "{page.as_posix()}"\n{body}\n'
        f'TEST(Pages, {name}) {{ Compare(Example, R"~({match["output"]})~"); }}\n}}\n'
    )


def main(output, *pages):
    found = [example(pathlib.Path(page)) for page in pages]
    includes = sorted({line for lines, _ in found for line in lines})
    pathlib.Path(output).write_text(
        '#include "tests/docs/Compare.h"\n' + "".join(includes) + "\n" + "\n".join(body for _, body in found if body)
    )


main(*sys.argv[1:])
