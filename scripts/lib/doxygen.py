"""The filter through which Doxygen reads the headers: doxygen.py HEADER

Comments are plain texts: of Doxygen's commands they use @file, @param, @return and @throws, of Markdown `code`,
**emphasis**, lists and indented code; everything else stands for itself.

A comment covers the declaration below it. It also covers those that follow without a blank line or a comment of their own
when they have the same name (overloads; forms for names that are macros), or get or ask for what the first one sets; and
all of them when it begins with "Each: ". Doxygen knows of none of that, so each declaration gets a copy here. A comment of two
slashes within a class, before a blank line, is the head of what follows: a group of members, with its title and text.
"""

import pathlib
import re
import sys

COMMENT = re.compile(r"^ *///(?!<)(?: |$)")
TRAILING = re.compile(r"///<? ")
SCOPE = re.compile(r"^\s*(?:(?:template <.*> *)?(?:class|struct|union|enum)\b|(?:inline )?namespace\b|extern \"C\" \{)")
# Copying, moving and destroying, as the language has them.
SPECIAL = re.compile(r"^\s*(?:(?:virtual|constexpr) )?(?:~\w+\(|(\w+)\((?:const )?\1\s*&&?[^,]*\)|"
                     r"(\w+)& operator=\((?:const )?\2\s*&&?)")
NAME = re.compile(r"(operator *[^\s\w(]+|operator \w+|\w+)\(")
MARKS = re.compile(r"QVCOMMON_\w+|\[\[\w+\]\]|__attribute__\(\(.*?\)\)|template <[^;]*> |requires.*? (?=\w+\()")
SEVERAL = re.compile(r"^(?P<type>\s*[\w:]+(?: [\w:]+)*? )(?P<names>\w+(?: = [^,;({]+)?(?:, \w+(?: = [^,;({]+)?)+);"
                     r"(?:\s*///< (?P<text>.*))?$")


def escaped(text):
    text = re.sub(r'[\\<>&#%"@]', lambda match: "\\" + match[0], text)
    return re.sub(r"\\@(param |return|throws)", r"@\1", text)


def prose(text):
    """The text of a comment, but for what is between backquotes."""
    return "`".join(escaped(part) if i % 2 == 0 else part for i, part in enumerate(text.split("`")))


def as_doxygen(line):
    """A line with its comment as Doxygen takes it."""
    if line == "/// @file" or line.lstrip().startswith("///     "):
        return line
    match = TRAILING.search(line)
    return line[: match.end()] + prose(line[match.end():]) if match else line


def subject(declaration):
    """What a function is about: its name, without what getters, setters and forms for macros add to it. None for others."""
    if re.match(r"\s*(?:using|typedef|enum)\b|.*= delete", declaration):
        return None
    match = NAME.search(MARKS.sub("", declaration))
    return match and re.sub(r"^(?:Get|Set|Is|Has)(?=[A-Z])|(?<=[a-z])(?:A|W|64)$", "", match[1])


def groups(lines):
    """The lines with the heads of groups as Doxygen takes them, and each group ended where the next thing begins."""
    out, is_open, hidden = [], False, False
    while lines:
        line, lines = lines[0], lines[1:]
        access = re.match(r"(?:public|protected|private):", line.strip()) or re.match(r" *(?:class|struct) [^;]*{$", line)
        if access:
            hidden = line.strip().startswith("private") or line.strip().startswith("class")
        head = [line] if re.match(r" +// ", line) and not hidden and re.match(r"$|.*[{:]$", out[-1]) else []
        while head and lines and re.match(r" +//(?: |$)", lines[0]):
            head, lines = head + lines[:1], lines[1:]
        is_head = head and lines and not lines[0].strip()
        if is_open and (is_head or access or line.startswith("}")):
            out.append("//!@}")
            is_open = False
        if not is_head:
            out += head or [line]
            continue
        text = " ".join(part.strip()[2:].strip() for part in head)
        text = re.sub(r" \([\w/, ]+\.cpp[\w/, .]*\)", "", text)
        title, _, rest = text.partition("  " if "  " in text else ". ")  # its first paragraph, or its first sentence
        out += ["//! @name " + prose(title.rstrip(".")), "//! " + prose(rest), "//!@{"]
        is_open = True
    return out


class Cover:
    """Gives each declaration the comment that covers it, and each of several variables in a line a line of its own."""

    def __init__(self, lines):
        self.lines, self.out = lines, []
        self.comment, self.fresh, self.each, self.about = [], False, False, None
        self.depth, self.scopes = 0, []
        self.classes = set(re.findall(r"^\s*(?:class|struct) (?:QVCOMMON_API )?(\w+)", "\n".join(lines), re.M))
        self.open = False  # within a declaration that goes on

    def run(self):
        for number, line in enumerate(self.lines):
            if COMMENT.match(line):
                self.take(line)
            elif not line.strip() or re.match(r"\s*(?:#|//|public:|protected:|private:)", line):
                self.comment, self.fresh, self.each = [], False, False
                self.out.append(line)
            elif SPECIAL.match(line) and not self.fresh and line.endswith((";", "}")):
                self.out.append("")
            else:
                if not self.open and self.depth == len(self.scopes):
                    self.declare(" ".join(self.lines[number:number + 3]))
                self.out.extend(self.apart(line))
                self.follow(line)
        return self.out

    def take(self, line):
        if not self.fresh:
            self.comment, self.each = [], "/// Each: " in line
            line = re.sub("(?<=/// )Each: (.)", lambda match: match[1].upper(), line)
        self.comment.append(line)
        self.fresh = True
        self.out.append(line)

    def declare(self, text):
        about = subject(text.split(";")[0])
        if about in self.classes:
            about = None
        if self.fresh:
            self.about, self.fresh = about, False
        elif self.comment and (self.each or about and about == self.about) and "///<" not in text.split(";")[0]:
            self.out.extend(self.comment)

    def apart(self, line):
        match = SEVERAL.match(line) if self.depth == len(self.scopes) else None
        if not match:
            return [line]
        text = match["text"] or " ".join(part.strip()[4:] for part in self.comment)
        comment = f"  ///< {text}" if text else ""
        return [f"{match['type']}{name};{comment}" for name in match["names"].split(", ")]

    def follow(self, line):
        """Keeps account of scopes, and of declarations that go on in the next line."""
        code = re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])\'|//.*', "", line)
        if SCOPE.match(code) and "{" in code and "}" not in code:
            self.scopes.append(self.depth)
            self.comment = []
        self.depth += sum(char in "{(" for char in code) - sum(char in "})" for char in code)
        while self.scopes and self.depth <= self.scopes[-1]:
            self.scopes.pop()
            self.comment = []
        self.open = not re.search(r"[;{}]\s*$|^\s*DECLARE_\w+\(.*\)\s*$", code.rstrip() or ";") or \
            self.depth > len(self.scopes)


def filtered(text):
    # What a file's comment says on the line of @file itself would be taken for the file's name, and what is ours of the
    # standard library's templates is for the compiler alone.
    text = re.sub(r"^/// @file (?=.)", "/// @file\n/// ", text, flags=re.M)
    text = re.sub(r"^template <>\n.*?^};$", "", text, flags=re.M | re.S)
    return "".join(as_doxygen(line) + "\n" for line in Cover(groups(text.splitlines())).run())


if __name__ == "__main__":
    print(filtered(pathlib.Path(sys.argv[1]).read_text()), end="")
