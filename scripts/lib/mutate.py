"""Breaks sources one at a time and runs the suite against each break: mutate.py ROOT COUNT SEED

The breaks happen in a copy of the tree below build/mutate. A break that does not compile is drawn again; one after which
the suite fails, crashes or does not come to an end is caught. Exit status 0 whatever was caught.
"""

import pathlib
import random
import re
import shutil
import subprocess
import sys

FOLDERS = ("cabinet", "charts", "core", "dialogs", "files", "framework", "html", "imaging", "messages", "platform",
           "settings", "system", "threads", "xml")
# What this machine does not compile.
ELSEWHERE = ("platform/windows/", "xml/dom/msxml/")
LONGEST = 300  # seconds that the suite may take

SWAPS = {" < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ", " == ": " != ", " != ": " == ", " && ": " || ",
         " || ": " && ", " + 1": "", " - 1": "", "true": "false", "false": "true", "++": "--", " += ": " -= "}
CONDITION = re.compile(r"^(\s*(?:if|while) \()(.*)(\)(?: \{| return.*| continue;| break;)?)$")
CALL = re.compile(r"^\s+[\w.>:*-]+\([^;]*\);$")
NO_CALL = re.compile(r"^\s+(return|throw|static_assert|co_|delete)\b")


def breaks_of(line):
    """All ways to break a line of code."""
    if line.lstrip().startswith(("//", "#", "template", "using", "static_assert")):
        return
    code = line.split("//")[0]
    for old, new in SWAPS.items():
        for found in re.finditer(re.escape(old), code):
            if code[:found.start()].count('"') % 2 == 0:
                yield line[:found.start()] + new + line[found.end():]
    condition = CONDITION.match(line)
    if condition and condition[2].count("(") == condition[2].count(")") and ";" not in condition[2]:
        yield f"{condition[1]}!({condition[2]}){condition[3]}"
    if CALL.match(line) and not NO_CALL.match(line):
        yield ""


def candidates(root):
    listed = subprocess.run(["git", "-C", root, "ls-files", "*.cpp", "*.h"], capture_output=True, text=True, check=True)
    for path in listed.stdout.split():
        if path.split("/")[0] not in FOLDERS or path.startswith(ELSEWHERE):
            continue
        for number, line in enumerate((root / path).read_text().split("\n")):
            for broken in breaks_of(line):
                yield path, number, line, broken


def succeeds(command, folder, seconds):
    try:
        return subprocess.run(command, cwd=folder, timeout=seconds, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, check=False).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def builds(copy):
    return succeeds(["cmake", "--build", "--preset", "linux", "--target", "qvcommon_tests"], copy, 1800)


def passes(copy):
    return succeeds(["../bin/qvcommon_tests", "--gtest_brief=1", "--gtest_fail_fast"], copy / "build/linux/tests",
                    LONGEST)


def copy_of(root):
    copy = root / "build/mutate/tree"
    listed = subprocess.run(["git", "-C", root, "ls-files", "-z"], capture_output=True, text=True, check=True).stdout
    for path in listed.rstrip("\0").split("\0"):
        source, target = root / path, copy / path
        target.parent.mkdir(parents=True, exist_ok=True)
        if not target.exists() or target.read_bytes() != source.read_bytes():
            shutil.copy2(source, target)
    if not succeeds(["cmake", "--preset", "linux"], copy, 300) or not builds(copy) or not passes(copy):
        sys.exit("mutate: the tree does not build and pass as it is")
    return copy


def try_break(copy, path, number, broken):
    """None where it does not compile, else whether it was caught."""
    source = copy / path
    whole = source.read_text()
    lines = whole.split("\n")
    lines[number] = broken
    source.write_text("\n".join(lines))
    try:
        return not passes(copy) if builds(copy) else None
    finally:
        source.write_text(whole)


def main(root, count, seed):
    copy = copy_of(root)
    drawn = sorted(candidates(root))
    random.Random(seed).shuffle(drawn)
    caught, survivors = 0, []
    for path, number, line, broken in drawn:
        if caught + len(survivors) == count:
            break
        result = try_break(copy, path, number, broken)
        if result is None:
            continue
        caught += result
        if not result:
            survivors.append(f"{path}:{number + 1}: {line.strip()}  ->  {broken.strip() or 'nothing'}")
            print(survivors[-1], flush=True)
    (root / "build/mutate/survivors.txt").write_text("".join(text + "\n" for text in survivors))
    print(f"{caught} of {caught + len(survivors)} breaks were caught")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]), int(sys.argv[3]))
