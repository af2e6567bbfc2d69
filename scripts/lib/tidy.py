"""Runs clang-tidy over the library's sources: tidy.py ROOT BUILD-FOLDER

A source whose text with everything that it includes has passed before, under the same checks and version, is not
analysed again. Exit status 1 when a source did not pass.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

from tree import FLOORS


def sources(root, build):
    """The compile commands of our own sources, one a file."""
    commands, folders = {}, " ".join(FLOORS).split()
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = pathlib.Path(entry["directory"], entry["file"]).resolve()
        if path.is_relative_to(root) and path.relative_to(root).parts[0] in folders:
            commands[path] = entry
    return commands


def compiler_arguments(entry):
    """The arguments of the compile command without its output, launcher and compiler."""
    words = shlex.split(entry["command"])
    output = words.index("-o")
    del words[output : output + 2]
    first = next(i for i, word in enumerate(words) if word.startswith("-"))
    return [word for word in words[first:] if word != "-c"]


def fingerprint(entry, checks):
    """What the analysis depends on; comments count, since they can silence a check. None if it cannot be read."""
    command = ["clang++", "-w", "-E", "-C", *compiler_arguments(entry)]
    text = subprocess.run(command, cwd=entry["directory"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    return hashlib.sha256(checks + text.stdout).hexdigest() if text.returncode == 0 else None


def analyse(path, entry, build, checks, passed):
    """The complaints about one source, empty when there are none."""
    mark = fingerprint(entry, checks)
    if mark and (passed / mark).exists():
        return ""
    tidy = subprocess.run(
        ["clang-tidy", "-quiet", "-p", build, path], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
    )
    if tidy.returncode != 0:
        return tidy.stdout or f"{path}: clang-tidy ended with status {tidy.returncode}\n"
    if mark:
        (passed / mark).touch()
    return ""


def main(root, build):
    root, build = pathlib.Path(root).resolve(), pathlib.Path(build).resolve()
    version = subprocess.run(["clang-tidy", "--version"], stdout=subprocess.PIPE, check=True).stdout
    checks = version + (root / ".clang-tidy").read_bytes()
    passed = build / "tidy"
    passed.mkdir(exist_ok=True)
    found = sources(root, build)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = list(pool.map(lambda item: analyse(*item, build, checks, passed), sorted(found.items())))
    bad = [text for text in complaints if text]
    sys.stdout.write("".join(bad))
    print(f"{len(found)} sources analysed, {len(bad)} with complaints")
    return 1 if bad or not found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
