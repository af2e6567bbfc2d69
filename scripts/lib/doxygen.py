"""The filter through which Doxygen reads the headers: doxygen.py HEADER

Comments are plain text: of Doxygen's commands they use @file, @param, @return and @throws, of Markdown `code`,
**emphasis**, lists and indented code; everything else is literal.

A comment covers the declaration below it. It also covers the following ones without a blank line or their own comment if
they have the same name (overloads; forms for names that are macros), or are getters of what the first one sets; and all
of them if it begins with "Each: ". Doxygen does not know these rules, so each declaration gets a copy here. A comment
with two slashes in a class, before a blank line, is the heading of a group of members, with its title and text.
"""

import pathlib
import re
import sys

COMMENT = re.compile(r"^ *///(?!<)(?: |$)")
TRAILING = re.compile(r"///<? ")
SCOPE = re.compile(r"^\s*(?:(?:template <.*> *)?(?:class|struct|union|enum)\b|(?:inline )?namespace\b|extern \"C\" \{)")
# Copy and move operations and destructors, with their standard meaning.
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
    """Escapes the text of a comment, except between backquotes."""
    return "`".join(escaped(part) if i % 2 == 0 else part for i, part in enumerate(text.split("`")))


def as_doxygen(line):
    """Converts the comment of a line to Doxygen's form."""
    if line == "/// @file" or line.lstrip().startswith("///     "):
        return line
    match = TRAILING.search(line)
    return line[: match.end()] + prose(line[match.end():]) if match else line


def subject(declaration):
    """Returns the subject of a function: its name without the affixes of getters, setters and forms for macros, or None."""
    if re.match(r"\s*(?:using|typedef|enum)\b|.*= delete", declaration):
        return None
    match = NAME.search(MARKS.sub("", declaration))
    return match and re.sub(r"^(?:Get|Set|Is|Has)(?=[A-Z])|(?<=[a-z])(?:A|W|64)$", "", match[1])


def groups(lines):
    """Converts the headings of groups to Doxygen's form, and ends each group before the next heading."""
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
    """Gives each declaration the comment that covers it, and splits several variables in a line into lines."""

    def __init__(self, lines):
        self.lines, self.out = lines, []
        self.comment, self.fresh, self.each, self.about = [], False, False, None
        self.depth, self.scopes = 0, []
        self.classes = set(re.findall(r"^\s*(?:class|struct) (?:QVCOMMON_API )?(\w+)", "\n".join(lines), re.M))
        self.open = False  # within an unfinished declaration

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
        """Tracks scopes, and declarations that continue on the next line."""
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
    # Text on the line of @file itself would be parsed as the file's name, and template declarations that only the
    # compiler needs are hidden.
    text = re.sub(r"^/// @file (?=.)", "/// @file\n/// ", text, flags=re.M)
    text = re.sub(r"^template <>\n.*?^};$", "", text, flags=re.M | re.S)
    return "".join(as_doxygen(line) + "\n" for line in Cover(groups(text.splitlines())).run())


if __name__ == "__main__":
    print(filtered(pathlib.Path(sys.argv[1]).read_text()), end="")
