"""Runs a table of command lines of the tool: commands.py TABLE PROGRAM...

A case begins with a line "== TITLE" and has its own folder. Its lines, as often as needed:

    @ NAME: TEXT     a file of one line; "@ NAME/" a folder; "@ NAME:" an empty file
    < TEXT           a line of the next command's standard input
    $ qv WORDS       runs the tool; words are quoted as in a shell
    > TEXT           a line that it prints; without such lines it prints nothing
    2> TEXT          a line on standard error; "..." at either end matches any text
    = STATUS         its exit status; without such a line 1 where there are errors, 0 elsewhere
    & COMMAND: TEXT  it refuses its words: an error with a hint at the command's help, and status 2
    ? NAME...        names that the folder holds now; "! NAME" says that a name is missing
    ? NAME: TEXT     a file that holds this one line now

"\\0" is a zero byte; after one at its end a line of input has no line end. Paths may be written with "/" on
every system; "\\" in what the tool prints is read as "/".
"""

import os
import shlex
import subprocess
import sys
import tempfile


class Command:
    def __init__(self, words, given):
        self.words, self.given = words, "".join(line + "\n" * (not line.endswith("\0")) for line in given)
        self.output, self.errors, self.status = [], [], 0

    def expect(self, key, rest):
        if key == ">":
            self.output.append(rest)
        elif key == "2>":
            self.errors.append(rest)
            self.status = 1
        elif key == "=":
            self.status = int(rest)
        else:
            subject, _, text = rest.partition(": ")
            self.errors, self.status = [f"qv: {text}", f"See '{subject} --help'."], 2


def read(table):
    cases, given = [], []
    for number, line in enumerate(open(table, encoding="utf-8"), 1):
        key, _, rest = line.rstrip("\n").replace("\\0", "\0").partition(" ")
        if key == "==":
            cases.append((rest, []))
        elif key == "<":
            given.append(rest)
        elif key == "$":
            cases[-1][1].append((number, Command(shlex.split(rest)[1:], given)))
            given = []
        elif key in (">", "2>", "=", "&"):
            cases[-1][1][-1][1].expect(key, rest)
        elif key in ("@", "?", "!"):
            cases[-1][1].append((number, (key, rest)))
        elif key not in ("", "#"):
            sys.exit(f"{table}:{number}: not understood: {line}")
    return cases


def make(folder, rest):
    name, _, text = rest.partition(":")
    path = os.path.join(folder, name)
    os.makedirs(path if name.endswith("/") else os.path.dirname(path), exist_ok=True)
    if not name.endswith("/"):
        with open(path, "w", encoding="utf-8") as file:
            file.write(text[1:] + "\n" if text else "")
    return []


def matches(line, wanted):
    if wanted.startswith("..."):
        return line.endswith(wanted[3:])
    return line.startswith(wanted[:-3]) if wanted.endswith("...") else line == wanted


def differences(kind, found, wanted):
    lines = found.replace("\r\n", "\n").replace("\\", "/").splitlines()
    same = len(lines) == len(wanted) and all(map(matches, lines, wanted))
    return [] if same else [f"{kind}: wanted {wanted}", f"{kind}: found  {lines}"]


def problems_of(step, program, folder):
    if isinstance(step, Command):
        run = subprocess.run([*program, *step.words], cwd=folder, input=step.given, capture_output=True, text=True,
                             encoding="utf-8", errors="surrogateescape", timeout=120)
        status = [f"status: wanted {step.status}, found {run.returncode}"] * (run.returncode != step.status)
        return differences("output", run.stdout, step.output) + differences("errors", run.stderr, step.errors) + status
    key, rest = step
    if key == "@":
        return make(folder, rest)
    name, colon, text = rest.partition(": ")
    if colon:
        with open(os.path.join(folder, name), encoding="utf-8") as file:
            return differences(name, file.read(), [text])
    return [f"{name} is {'missing' if key == '?' else 'there'}" for name in rest.split()
            if os.path.exists(os.path.join(folder, name)) != (key == "?")]


def main():
    table, *program = sys.argv[1:]
    failed = 0
    cases = read(table)
    for title, steps in cases:
        with tempfile.TemporaryDirectory() as folder:
            for number, step in steps:
                for problem in problems_of(step, program, folder):
                    print(f"{table}:{number}: {title}: {problem}")
                    failed += 1
    print(f"Ran {len(cases)} tests in all")
    sys.exit(1 if failed or not cases else 0)


if __name__ == "__main__":
    main()
