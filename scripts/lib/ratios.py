"""Ratios of the times in JSON files of Google Benchmark: ratios.py FILE...

A benchmark is named GROUP/WHO or GROUP/WHO/SIZE. Those of one group and size are compared: the first WHO is ours, the
others are its peers. In a group named Growth_..., each WHO is compared with itself, at its first and last size. A ratio
is the median over the repetitions, which ran interleaved.
"""

import json
import pathlib
import re
import statistics
import sys

# Suffixes that Google Benchmark adds to a name for the run's settings.
SETTINGS = re.compile(r"/(?:(?:iterations|min_time|min_warmup_time|repeats|threads):[\d.]+|(?:manual|process|real)_time)")
UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}


class Measured:
    """The result of one name: values by repetition, or why it has no values."""

    def __init__(self):
        self.values, self.error = {}, ""

    def add(self, run):
        if run.get("error_occurred"):
            self.error = run["error_message"]
        else:
            self.values[run.get("repetition_index", 0)] = run["real_time"] * UNITS.get(run["time_unit"], 1)

    def over(self, other):
        """Returns the ratio of these values to another's; None if one has no values."""
        both = [value / other.values[at] for at, value in self.values.items() if other.values.get(at)]
        return statistics.median(both) if both and not (self.error or other.error) else None


def parts(name):
    """Splits a name into GROUP, WHO and SIZE, which may be empty. WHO may contain slashes, but no number after one."""
    group, _, rest = SETTINGS.sub("", name).partition("/")
    who, size = re.fullmatch(r"(.*?)((?:/\d+)?)", rest).groups()
    return group, who, size[1:]


def is_growth(group):
    return group.startswith("Growth_")


def read(paths):
    """Returns {GROUP or GROUP/SIZE: {WHO, or SIZE of a growth: Measured}}, both in registration order."""
    groups = {}
    for path in paths:
        runs = json.loads(pathlib.Path(path).read_text())["benchmarks"]
        runs.sort(key=lambda run: (run.get("family_index", 0), run.get("per_family_instance_index", 0)))
        for run in runs:
            if run.get("run_type") == "iteration":
                group, who, size = parts(run["run_name"])
                row, entry = (f"{group}/{who}", size) if is_growth(group) else (f"{group}/{size}".rstrip("/"), who)
                groups.setdefault(row, {}).setdefault(entry, Measured()).add(run)
    return groups


def show(groups):
    for name, entries in groups.items():
        print(name)
        ours = next(iter(entries.values()))
        for who, measured in entries.items():
            ratio = measured.over(ours)
            print(f"    {who:44}", measured.error or f"{ratio:8.2f} x" if measured.error or ratio else "no figure")


if __name__ == "__main__":
    show(read(sys.argv[1:]))
