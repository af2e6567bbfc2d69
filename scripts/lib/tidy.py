"""Runs clang-tidy over the library's sources: tidy.py ROOT BUILD-FOLDER

Sources of one folder are analysed several at a time, as one unit that includes them: most of an analysis is spent on
headers. A unit whose text with everything that it includes has passed before, under the same checks and version, is not
analysed again. Exit status 1 when a unit did not pass.
"""

import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

from tree import LAYERS

TOGETHER = 10


def sources(root, build):
    """The compile commands of our own sources, one a file."""
    commands, folders = {}, " ".join(LAYERS).split()
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = pathlib.Path(entry["directory"], entry["file"]).resolve()
        if path.is_relative_to(root) and path.relative_to(root).parts[0] in folders:
            commands[path] = entry
    return commands


def compiler_arguments(entry):
    """The arguments of the compile command without its output, launcher, compiler and source."""
    words = shlex.split(entry["command"])
    output = words.index("-o")
    del words[output : output + 2]
    first = next(i for i, word in enumerate(words) if word.startswith("-"))
    return [word for word in words[first:] if word not in ("-c", entry["file"])]


def units(root, found, folder):
    """Writes the units, and returns the path and the compiler's arguments of each."""
    alike = collections.defaultdict(list)
    for path, entry in sorted(found.items()):
        alike[path.parent, tuple(compiler_arguments(entry))].append(path)
    batches = []
    for (parent, arguments), paths in alike.items():
        # Each command of the tool has its own names.
        size = 1 if parent.is_relative_to(root / "tools") else TOGETHER
        batches += [(paths[i : i + size], arguments) for i in range(0, len(paths), size)]
    for number, (paths, arguments) in enumerate(batches):
        unit = folder / f"{number}.cpp"
        unit.write_text("".join(f'#include "{path}"\n' for path in paths))
        yield unit, arguments


def fingerprint(unit, arguments, checks):
    """What the analysis depends on; comments count, since they can silence a check. None if it cannot be read."""
    command = ["clang++", "-w", "-E", "-C", *arguments, unit]
    text = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    return hashlib.sha256(checks + text.stdout).hexdigest() if text.returncode == 0 else None


def analyse(unit, arguments, config, checks, passed):
    """The complaints about one unit, empty if it passes."""
    mark = fingerprint(unit, arguments, checks)
    if mark and (passed / mark).exists():
        return ""
    tidy = subprocess.run(
        ["clang-tidy", "-quiet", f"--config-file={config}", "-checks=-bugprone-suspicious-include", unit, "--", *arguments,
         # The analyzer leaves out the functions of included files unless it is asked for them.
         "-Xclang", "-analyzer-opt-analyze-headers"],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
    )
    if tidy.returncode != 0:
        return tidy.stdout or f"{unit}: clang-tidy ended with status {tidy.returncode}\n"
    if mark:
        (passed / mark).touch()
    return ""


def main(root, build):
    root, build = pathlib.Path(root).resolve(), pathlib.Path(build).resolve()
    version = subprocess.run(["clang-tidy", "--version"], stdout=subprocess.PIPE, check=True).stdout
    config = root / ".clang-tidy"
    checks = version + config.read_bytes()
    passed = build / "tidy"
    passed.mkdir(exist_ok=True)
    found = sources(root, build)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = list(pool.map(lambda unit: analyse(*unit, config, checks, passed), units(root, found, passed)))
    bad = [text for text in complaints if text]
    sys.stdout.write("".join(bad))
    print(f"{len(found)} sources analysed in {len(complaints)} units, {len(bad)} with complaints")
    return 1 if bad or not found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
