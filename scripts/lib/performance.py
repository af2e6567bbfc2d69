"""Writes docs/performance.md, and the ratios in README.md, from the benchmarks' results:

    performance.py ROOT FILE...

The files are the benchmarks' JSON output, which has every figure. The descriptions of the rows and their bounds are in
benchmarks/performance.toml.
"""

import os
import pathlib
import re
import sys
import tomllib

import ratios

HEAD = """\
# Performance

Each figure is the time of another library or program divided by that of QvCommon for the same work: 2.0 means that
QvCommon takes half the time. All members of a row ran interleaved in one process or one run, and a figure is the median
of the repetitions' ratios. Times depend on the machine; ratios depend on it less.

Measured on: {machine}.

`scripts/bench --publish` repeats the measurements and updates this page and the figures in the README;
`scripts/bench FAMILY` prints one family.
"""
GROWTH = """
## Growth

The time for four times the input relative to that for the input itself. Linear work takes 4 times as long, sorting a bit
more; 16 would be quadratic. "Prepared" input is repetitive, so that a naive search takes quadratic time on it.

| Operation | From | To | Time |
| --- | ---: | ---: | ---: |
"""
BLOCK = re.compile(r"(<!-- ratios -->\n).*?(<!-- /ratios -->)", re.S)


def figure(ratio):
    """Formats with two significant digits, about the precision of a measurement."""
    return f"{ratio:.0f}" if ratio >= 9.95 else f"{ratio:.1f}" if ratio >= 0.995 else f"{ratio:.2f}"


def peers(entries, names):
    """Returns the ratios of a row's peers as text, and why others have none."""
    (_, ours), *others = entries.items()
    known = [(names.get(who, who), peer, peer.over(ours)) for who, peer in others]
    shown = ", ".join(f"{who} **{figure(ratio)}**" for who, _, ratio in known if ratio)
    return shown, [f"{who} ({peer.error or ours.error or 'not measured'})" for who, peer, ratio in known if not ratio]


def family(about, names, groups):
    """Returns a section: its table, and what is missing from it."""
    lines, missing = [], []
    for row in about["row"]:
        if row["group"] not in groups:
            missing.append(f"{row['what']}: not measured")
            continue
        shown, without = peers(groups[row["group"]], names)
        missing += [f"{row['what']}: {who}" for who in without]
        if shown:
            lines.append(f"| {row['what']} | {shown} | {row['bound']} |\n")
    table = "| Operation | Compared with | What bounds it |\n| --- | --- | --- |\n" + "".join(lines) if lines else ""
    note = "\nLeft out here:\n\n" + "".join(f"- {one}\n" for one in missing) if missing else ""
    return f"\n## {about['title']}\n\n{table}{note}"


def growth(groups, notes):
    """Returns the table of growths, with a note if one is known to be more than linear."""
    lines = ""
    for name, entries in groups.items():
        if ratios.is_growth(name):
            (first, once), *_, (last, more) = entries.items()
            what = name.removeprefix("Growth_").split("/")[0]
            known, ratio = notes.get(what, ""), more.over(once)
            title = re.sub(r"Prepared$", ", prepared", what) + (f": {known}" if known else "")
            lines += f"| {title} | {int(first):,} | {int(last):,} | {figure(ratio) if ratio else 'not measured'} |\n"
    return GROWTH + lines if lines else ""


def unknown(about, groups):
    """Returns the groups that no row describes."""
    rows = {row["group"] for section in about["family"] for row in section["row"]}
    return [name for name in groups if name not in rows and not ratios.is_growth(name)]


def page(about, groups, machine):
    sections = "".join(family(section, about["names"], groups) for section in about["family"])
    return HEAD.format(machine=machine) + sections + growth(groups, about["growth"])


def with_ratios(text, about, groups):
    """Returns the README with the rows between its markers replaced; unchanged if it has no markers."""
    rows = [row for section in about["family"] for row in section["row"] if row.get("readme")]
    shown = ((row["what"], peers(groups[row["group"]], about["names"])[0]) for row in rows if row["group"] in groups)
    table = "".join(f"| {what} | {ratio} |\n" for what, ratio in shown if ratio)
    block = f"\n| Operation | Time relative to QvCommon |\n| --- | --- |\n{table}\n"
    return BLOCK.sub(lambda old: old[1] + block + old[2], text)


def machine():
    """Returns the class of the machine, as far as the system reports it."""
    def value(path, pattern):
        match = re.search(pattern, pathlib.Path(path).read_text(), re.M) if os.path.exists(path) else None
        return match[1].strip() if match else "unknown"

    memory = value("/proc/meminfo", r"^MemTotal:\s*(\d+)")
    size = f"{round(int(memory) / 2**20)} GB of memory" if memory.isdigit() else "unknown memory"
    processor = value("/proc/cpuinfo", r"^model name\s*:(.*)")
    kind = value("/proc/cpuinfo", r"^cpu family\s*:(.*)")
    system = value("/etc/os-release", r"^PRETTY_NAME=.(.*).$")
    return f"{os.cpu_count()} cores, {processor} (family {kind}), {size}, {system}"


def main(root, *files):
    root = pathlib.Path(root)
    about = tomllib.loads((root / "benchmarks/performance.toml").read_text())
    groups = ratios.read(files)
    for name in unknown(about, groups):
        print(f"benchmarks/performance.toml has no row for {name}", file=sys.stderr)
    (root / "docs/performance.md").write_text(page(about, groups, machine()))
    readme = root / "README.md"
    readme.write_text(with_ratios(readme.read_text(), about, groups))


if __name__ == "__main__":
    main(*sys.argv[1:])
