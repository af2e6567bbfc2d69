"""Makes one C++ source of the examples in the documentation's pages.

    examples.py OUTPUT PAGE...

A page's example is its block ```cpp, a program; the block ```text behind it is what the program prints. Each example comes
into a namespace of its own, and becomes a test that runs it in a fresh folder and compares.
"""

import pathlib
import re
import sys

BLOCKS = re.compile(r"^```cpp\n(?P<code>.*?)^```\n.*?^```text\n(?P<output>.*?)^```\n", re.M | re.S)


def lines_before(text, position):
    return text.count("\n", 0, position)


def example(page):
    text = page.read_text()
    found = BLOCKS.findall(text)
    if len(found) != 1:
        sys.exit(f"{page}: {len(found)} examples with their output, where one is due")
    match = BLOCKS.search(text)
    code = match["code"]
    includes = re.findall(r"^#include .*\n", code, re.M)
    first = lines_before(text, match.start("code")) + 1
    body, count = re.subn(r"^int main\(\)", "static void Example()", re.sub(r"^#include .*$", "", code, flags=re.M), flags=re.M)
    if count != 1:
        sys.exit(f"{page}: the example has no main")
    name = "".join(part.capitalize() for part in page.stem.lower().split("-"))
    return includes, (
        f'namespace {name}Page {{\n#line {first} "{page.as_posix()}"\n{body}\n'
        f'TEST(Pages, {name}) {{ Compare(Example, R"~({match["output"]})~"); }}\n}}\n'
    )


def main(output, *pages):
    found = [example(pathlib.Path(page)) for page in pages]
    includes = sorted({line for lines, _ in found for line in lines})
    pathlib.Path(output).write_text(
        '#include "tests/docs/Compare.h"\n' + "".join(includes) + "\n" + "\n".join(body for _, body in found)
    )


main(*sys.argv[1:])
