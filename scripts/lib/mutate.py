"""Breaks sources one at a time and runs the suite against each break: mutate.py ROOT COUNT SEED [JOBS]

The breaks happen in copies of the tree below build/mutate, one copy a job. A break that does not compile is replaced by
the next one drawn; one after which the suite fails, crashes or does not end is caught. Exit status 0 in any case.

Quick tests run before slow ones, those of the broken folder first, and the test that caught a break in an earlier run
before all others.
"""

import collections
import concurrent.futures
import contextlib
import hashlib
import itertools
import json
import os
import pathlib
import queue
import re
import shutil
import signal
import subprocess
import sys
import tempfile

FOLDERS = ("cabinet", "charts", "core", "dialogs", "files", "framework", "html", "imaging", "messages", "platform",
           "settings", "system", "threads", "xml")
# What this machine does not compile.
ELSEWHERE = ("platform/windows/", "xml/dom/msxml/")
QUICK = 0.3  # seconds that a test of the first round takes at most
OPTIONS = ("-DQV_PRECOMPILE=ON", "-DQV_WARNINGS_AS_ERRORS=OFF", "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -DNDEBUG")

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


def candidates(root, seed):
    """All breaks as (path, line number, broken line, name), in an order that depends on the seed, and for each break on
    its own code alone: what is added elsewhere or said in a comment does not change what is drawn."""
    listed = subprocess.run(["git", "-C", root, "ls-files", "*.cpp", "*.h"], capture_output=True, text=True, check=True)
    found, seen = [], collections.Counter()
    for path in listed.stdout.split():
        if path.split("/")[0] not in FOLDERS or path.startswith(ELSEWHERE):
            continue
        for number, line in enumerate((root / path).read_text().split("\n")):
            for broken in breaks_of(line):
                old, new = (text.split(" //")[0].strip() for text in (line, broken))
                name = f"{path}: {old}  ->  {new or 'nothing'}"
                seen[name] += 1
                found.append((path, number, broken, f"{name}  ({seen[name]})"))
    return sorted(found, key=lambda candidate: hashlib.sha256(f"{seed} {candidate[3]}".encode()).digest())


def run(command, folder, seconds):
    """The status and the output; no status if the command does not end in time. No child of it is left running."""
    with tempfile.TemporaryFile("w+", errors="replace") as output:
        process = subprocess.Popen(command, cwd=folder, stdout=output, stderr=subprocess.DEVNULL, start_new_session=True)
        try:
            status = process.wait(seconds)
        except subprocess.TimeoutExpired:
            status = None
        finally:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)
            process.wait()
        output.seek(0)
        return status, output.read()


Test = collections.namedtuple("Test", "seconds folder")


class Copy:
    """A copy of the tree, with its build."""

    def __init__(self, root, number):
        self.folder = root / f"build/mutate/{number}"
        self.tests = self.folder / "build/linux/tests"
        listed = subprocess.run(["git", "-C", root, "ls-files", "-z"], capture_output=True, text=True, check=True).stdout
        for path in listed.rstrip("\0").split("\0"):
            source, target = root / path, self.folder / path
            target.parent.mkdir(parents=True, exist_ok=True)
            if not target.exists() or target.read_bytes() != source.read_bytes():
                shutil.copy(source, target)  # not its time: what was built from another content is older
        configured, _ = run(["cmake", "--preset", "linux", *OPTIONS], self.folder, 300)
        if configured != 0 or not self.builds():
            sys.exit(f"mutate: {self.folder} does not build")

    def builds(self):
        return run(["cmake", "--build", "--preset", "linux", "--target", "qvcommon_tests"], self.folder, 1800)[0] == 0

    def first_failure(self, tests, seconds):
        """The name of a test that fails or does not end in time, empty if all pass."""
        status, output = run(["../bin/qvcommon_tests", "--gtest_fail_fast", "--gtest_filter=" + ":".join(tests)],
                             self.tests, seconds)
        started = re.findall(r"^\[ RUN      \] (.*)$", output, re.M)
        failed = re.findall(r"^\[  FAILED  \] ([^\s,]+)", output, re.M)
        return "" if status == 0 else (failed or started[-1:] or ["the suite"])[0]

    def times(self):
        """The seconds that each test takes, by name."""
        report = self.tests / "times.json"
        status, _ = run(["../bin/qvcommon_tests", f"--gtest_output=json:{report}"], self.tests, 1800)
        if status != 0:
            sys.exit("mutate: the tree does not pass as it is")
        return {f"{suite['name']}.{test['name']}": Test(float(test["time"].rstrip("s")), test["file"].split("/")[-2])
                for suite in json.loads(report.read_text())["testsuites"] for test in suite["testsuite"]}

    def catcher(self, candidate, rounds):
        """The test that catches a break, empty if none does, None if the break does not compile."""
        path, number, broken, _ = candidate
        source = self.folder / path
        whole = source.read_text()
        lines = whole.split("\n")
        lines[number] = broken
        source.write_text("\n".join(lines))
        try:
            return next(filter(None, (self.first_failure(*tests) for tests in rounds)), "") if self.builds() else None
        finally:
            source.write_text(whole)


def rounds(tests, folder, hint):
    """All tests in the order in which to run them, in groups with a limit in seconds."""
    def priority(name):
        return (name != hint, tests[name].seconds > QUICK, tests[name].folder != folder)

    groups = itertools.groupby(sorted(tests, key=priority), priority)
    return [(names, 30 + 5 * sum(tests[name].seconds for name in names)) for names in (list(group) for _, group in groups)]


def main(root, count, seed, jobs):
    copies = queue.SimpleQueue()
    for number in range(jobs):
        copies.put(Copy(root, number))
    first = copies.get()
    tests = first.times()
    copies.put(first)
    known = root / "build/mutate/catchers.json"
    catchers = json.loads(known.read_text()) if known.exists() else {}

    def tried(candidate):
        order = rounds(tests, candidate[0].split("/")[0], catchers.get(candidate[3]))
        copy = copies.get()
        try:
            result = copy.catcher(candidate, order)
        finally:
            copies.put(copy)
        if result is not None:
            catchers[candidate[3]] = result
            known.write_text(json.dumps(catchers.copy(), indent=0))
        print(f"{'?' if result is None else result or 'SURVIVES'}  {candidate[3]}", flush=True)
        return result

    drawn = candidates(root, seed)
    results, place = {}, 0
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        while len(results) < count and place < len(drawn):
            batch = drawn[place:place + count - len(results)]
            place += len(batch)
            results |= {candidate[3]: result for candidate, result in zip(batch, pool.map(tried, batch))
                        if result is not None}
    survivors = [name for name, result in results.items() if not result]
    (root / "build/mutate/survivors.txt").write_text("".join(name + "\n" for name in survivors))
    print(f"{len(results) - len(survivors)} of {len(results)} breaks were caught")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]).resolve(), *map(int, (sys.argv[2:] + ["1"])[:3]))
