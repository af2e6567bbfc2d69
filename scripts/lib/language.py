"""Finds words in comments and documentation that hide plainer ones: language.py ROOT

The words and the lines that may contain them are in language.toml. What is looked at: comments of sources and scripts,
strings of the tool, and documentation without its code. Exit status 1 when a word was found, or when an allowed line is
no longer in its file.
"""

import pathlib
import re
import sys
import tomllib

from tree import read

ELSEWHERE = re.compile(r"(tests/data|fuzz/seeds|abi|build)/|scripts/lib/language")
SCRIPT = re.compile(r".*\.(py|sh|cmake|toml)$|.*CMakeLists\.txt$|scripts/[^/.]+$")
CODE_OF_PAGES = re.compile(r"^(```|~~~).*?^\1|`[^`\n]*`", re.M | re.S)


def blank(match):
    """As many lines, empty."""
    return "\n" * match[0].count("\n")


def prose(path, text):
    """The text of a file as lines of which only what people read is left."""
    if path.endswith(".md"):
        return CODE_OF_PAGES.sub(blank, text).split("\n")
    if path.endswith((".h", ".cpp")):
        pattern = r'//.*|"[^"\n]*"' if path.startswith("tools/") else r"//.*"
    elif SCRIPT.match(path):
        text = re.sub(r'""".*?"""', lambda docstring: re.sub("^", "# ", docstring[0], flags=re.M), text, flags=re.S)
        pattern = r"(?:^|\s)#.*"
    else:
        return []
    return [" ".join(re.findall(pattern, line)) for line in text.split("\n")]


def findings(tree, rules):
    words = [(re.compile(rf"\b(?:{word})\b", re.I), better) for word, better in rules["words"].items()]
    for path, text in sorted(tree.items()):
        if ELSEWHERE.match(path):
            continue
        allowed = rules["allowed"].get(path, [])
        yield from (f"{path} no longer has the allowed line: {part}" for part in allowed if part not in text)
        for number, (line, whole) in enumerate(zip(prose(path, text), text.split("\n")), 1):
            if not any(part in whole for part in allowed):
                yield from (f"{path}:{number}: \"{found[0]}\": better {better}"
                            for word, better in words for found in [word.search(line)] if found)


def main(root):
    root = pathlib.Path(root)
    found = list(findings(read(root), tomllib.loads((root / "scripts/lib/language.toml").read_text())))
    print(*found, f"{len(found)} words", sep="\n")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
