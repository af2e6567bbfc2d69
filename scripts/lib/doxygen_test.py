"""Tests which comments the filter gives to which declarations: doxygen_test.py"""

import unittest

import doxygen

# Lines of a class, and what becomes of them.
CASES = {
    "overloads": ("/// A.\nint F(int a);\nint F(double a);", "/// A.\nint F(int a);\n/// A.\nint F(double a);"),
    "setters": ("/// A.\nint GetF() const { return 1; }\nvoid SetF(int f);",
                "/// A.\nint GetF() const { return 1; }\n/// A.\nvoid SetF(int f);"),
    "others": ("/// A.\nint F();\nint G();", "/// A.\nint F();\nint G();"),
    "each": ("/// Each: a <b>.\nint F();\nint G(\n    int a);\n\nint H();",
             "/// A \\<b\\>.\nint F();\n/// A \\<b\\>.\nint G(\n    int a);\n\nint H();"),
    "bodies": ("/// A.\nint F() {\n    return F(1);\n}\nint F(int);", "/// A.\nint F() {\n    return F(1);\n}\n/// A.\nint F(int);"),
    "several": ("int a = 0, b = 1;  ///< numbers", "int a = 0;  ///< numbers\nint b = 1;  ///< numbers"),
    "copies": ("C(const C& other);\n~C();\n/// A.\nC& operator=(C&& other);", "\n\n/// A.\nC& operator=(C&& other);"),
    "groups": ("// Sorting (core/Sort.cpp)\n//\n// By bytes.\n\n/// A.\nint F();",
               "//! @name Sorting\n//! By bytes.\n//!@{\n\n/// A.\nint F();\n//!@}"),
    "notes": ("// A note.\nint F();", "// A note.\nint F();"),
}


class Filter(unittest.TestCase):
    def test_cases(self):
        for name, (lines, expected) in CASES.items():
            with self.subTest(name):
                text = "struct C {\n" + "".join(f"    {line}\n" if line else "\n" for line in lines.split("\n")) + "};\n"
                body = [line.removeprefix("    ") for line in doxygen.filtered(text).split("\n")[1:-1]]
                self.assertEqual("\n".join(line for line in body if line != "};"), expected)


if __name__ == "__main__":
    unittest.main()
