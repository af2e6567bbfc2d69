"""A made-up tree with words that language.py finds, and words that it must not find."""

import unittest

import language

RULES = {
    "words": {"stands?(?! for)": "is", "told": "reports"},
    "allowed": {"a.h": ["As it stands in the book"], "b.md": ["gone"]},
}
TREE = {
    "a.h": '// It stands.\n// As it stands in the book.\nint stands;\n// "%" stands for a number\n',
    "b.md": "A text that was told.\n\n```cpp\nint told;\n```\n`told`\n",
    "c.py": '"""Was told."""\ntold = "told"\n# STANDS\n',
    "tools/d.cpp": 'Say("told");\n',
    "core/d.cpp": 'Say("told");\n',
    "tests/data/e.md": "told",
}


class Language(unittest.TestCase):
    def test_findings(self):
        places = [finding.split(": ")[0] for finding in language.findings(TREE, RULES)]
        self.assertEqual(places, ["a.h:1", "b.md no longer has the allowed line", "b.md:1", "c.py:1", "c.py:3",
                                  "tools/d.cpp:1"])


if __name__ == "__main__":
    unittest.main()
