#!/usr/bin/env python3
"""Measures the cost of using a library: the start of a program that calls one of its functions, the size of the
library, and the time to compile a file that includes all of its headers.

    bench_link [--benchmark_out=FILE] [--benchmark_repetitions=COUNT]

It must be beside the programs that it starts. The output file has the format of the other benchmarks. A peer that is
not installed is an error of its row only.
"""

import json
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
INCLUDE = "@PROJECT_SOURCE_DIR@/include"
COMPILER = "@CMAKE_CXX_COMPILER@"
STARTS = 50

# Name, program that calls it, library whose size counts, package of the headers, headers.
LIBRARIES = [
    ("QvCommon", "start_qvcommon", "libqvcommon", None, ["qvcommon/QvCommon.h"]),
    ("an empty program", "start_nothing", None, None, []),
    ("GLib", "start_glib", "libglib-2.0", "glib-2.0", ["glib.h"]),
    ("Qt Core", "start_qt", "libQt6Core", "Qt6Core", ["QtCore/QtCore"]),
    ("Boost", "start_boost", "libboost_", None,
     ["boost/algorithm/string.hpp", "boost/crc.hpp", "boost/date_time.hpp", "boost/filesystem.hpp", "boost/locale.hpp",
      "boost/property_tree/xml_parser.hpp", "boost/thread.hpp"]),
]


def start(program, *_):
    """Returns the seconds that one start takes."""
    path = str(HERE / program)
    before = time.perf_counter()
    for _ in range(STARTS):
        if os.waitstatus_to_exitcode(os.waitpid(os.posix_spawn(path, [path], os.environ), 0)[1]):
            raise OSError(f"{program} failed")
    return (time.perf_counter() - before) / STARTS


def size(program, library, *_):
    """Returns the bytes of the library without symbol table and debugging information, as in packages."""
    loaded = subprocess.run(["ldd", str(HERE / program)], capture_output=True, check=True, text=True).stdout
    paths = [line.split()[2] for line in loaded.splitlines() if line.strip().startswith(library)]
    with tempfile.TemporaryDirectory() as folder:
        stripped = pathlib.Path(folder, "stripped")
        total = 0
        for path in paths:
            subprocess.run(["strip", "--strip-unneeded", "-o", stripped, path], check=True)
            total += stripped.stat().st_size
    return total


def compile_file(_program, _library, package, headers):
    """Returns the seconds to compile a file that only includes the headers."""
    flags = ["-I" + INCLUDE] if package is None else shlex.split(
        subprocess.run(["pkg-config", "--cflags", package], capture_output=True, check=True, text=True).stdout)
    source = "".join(f"#include <{header}>\n" for header in headers)
    command = [COMPILER, "-std=c++20", "-O2", "-fPIC", *flags, "-x", "c++", "-c", "-o", "/dev/null", "-"]
    before = time.perf_counter()
    subprocess.run(command, input=source, check=True, text=True, stderr=subprocess.DEVNULL)
    return time.perf_counter() - before


# The empty program has no library, and nothing to include.
ROWS = [("StartProgram", "ms", 1e3, start, LIBRARIES),
        ("LibrarySize", "B", 1, size, [library for library in LIBRARIES if library[2]]),
        ("CompileAllHeaders", "ms", 1e3, compile_file, [library for library in LIBRARIES if library[4]])]


def measure(repetitions):
    runs = []
    for repetition in range(repetitions):
        for family, (row, unit, factor, action, libraries) in enumerate(ROWS):
            for place, (who, *about) in enumerate(libraries):
                run = {"run_name": f"{row}/{who}", "run_type": "iteration", "repetition_index": repetition,
                       "family_index": family, "per_family_instance_index": place, "time_unit": unit}
                try:
                    run["real_time"] = action(*about) * factor
                except (OSError, subprocess.CalledProcessError) as error:
                    run.update(error_occurred=True, error_message=f"failed, or not installed: {error}")
                runs.append(run)
    return runs


def main(arguments):
    options = dict(argument.lstrip("-").split("=", 1) for argument in arguments if "=" in argument)
    text = json.dumps({"benchmarks": measure(int(options.get("benchmark_repetitions", 5)))}, indent=1)
    out = options.get("benchmark_out")
    pathlib.Path(out).write_text(text) if out else print(text)


if __name__ == "__main__":
    main(sys.argv[1:])
