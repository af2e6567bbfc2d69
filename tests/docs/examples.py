"""Makes one C++ source of the examples in the documentation's pages.

    examples.py OUTPUT PAGE...

A page's examples are its blocks ```cpp, programs; the block ```text after one is what the program prints, a picture in its
place is a file that the program writes. Each example comes into a namespace of its own, and becomes a test that runs it in
a fresh folder and compares.

A page's blocks ```cc are parts of the programs in examples/, and must be there letter by letter.
"""

import pathlib
import re
import sys

BLOCKS = re.compile(r"^```cpp\n(?P<code>.*?)^```\n(?:(?!^```).)*?"
                    r"^(?:```text\n(?P<output>.*?)^```\n|!\[[^]]*\]\((?P<picture>[^)]*)\)\n)", re.M | re.S)


PARTS = re.compile(r"^```cc\n(.*?)^```\n", re.M | re.S)
PROGRAMS = [file.read_text() for file in (pathlib.Path(__file__).parents[2] / "examples").glob("*.cpp")]


def test(page, name, match):
    """The includes of an example, and the example as a test."""
    includes = re.findall(r"^#include .*\n", match["code"], re.M)
    body, mains = re.subn(r"^int main\(\)", "static void Example()", re.sub(r"^#include .*$", "", match["code"], flags=re.M),
                          flags=re.M)
    if mains != 1:
        sys.exit(f"{page}: the example has no main")
    line = page.read_text().count("\n", 0, match.start("code")) + 1
    compare = f'Compare(Example, R"~({match["output"]})~");'
    if match["picture"]:
        compare = f'ComparePicture(Example, "{(page.parent / match["picture"]).as_posix()}");'
    return includes, f'namespace {name}Page {{\n#line {line} "{page.as_posix()}"\n{body}\nTEST(Pages, {name}) {{ {compare} }}\n}}\n'


def examples(page):
    text = page.read_text()
    matches = list(BLOCKS.finditer(text))
    if len(matches) != text.count("```cpp\n"):
        sys.exit(f"{page}: each example is due with what it prints or draws")
    for part in PARTS.findall(text):
        if not any(part in program for program in PROGRAMS):
            sys.exit(f"{page}: no program of examples/ has this part:\n{part}")
    name = "".join(part.capitalize() for part in page.stem.lower().split("-"))
    return [test(page, name + (str(i) if i > 1 else ""), match) for i, match in enumerate(matches, 1)]


def main(output, *pages):
    found = [one for page in pages for one in examples(pathlib.Path(page))]
    includes = sorted({line for lines, _ in found for line in lines})
    pathlib.Path(output).write_text(
        '#include "tests/docs/Compare.h"\n' + "".join(includes) + "\n" + "\n".join(body for _, body in found if body)
    )


main(*sys.argv[1:])
