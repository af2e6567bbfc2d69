"""The library's sources of this system under another compiler: another_compiler.py COMPILE-COMMANDS GXX CLANGXX

Clang parses what meets Windows' headers, as the build compiles it, against GCC's standard library. It builds everything
else on Linux already. Exit status 77 where there is no clang.
"""

import concurrent.futures
import json
import os
import pathlib
import shlex
import shutil
import subprocess
import sys

commands, gxx, clang = sys.argv[1:]
if not shutil.which(clang):
    print(f"{clang} is missing")
    sys.exit(77)


def ask(*options):
    return subprocess.run([gxx, *options], capture_output=True, text=True, check=True).stdout.strip()


# What the build files give to GCC alone.
OF_GCC = {"-fno-keep-inline-dllexport", "-Wconversion", "-fpch-preprocess", "-Winvalid-pch", "-Wno-array-bounds",
          "-Wno-stringop-overflow"}

triple = ask("-dumpmachine")
library = pathlib.Path(ask("-print-file-name=include/c++"))
options = [f"--target={triple.replace('w64-mingw32', 'w64-windows-gnu')}", "-stdlib++-isystem", library,
           "-isystem", library / triple, "-fsyntax-only", "-Wno-unused-command-line-argument", "-Werror"]


def count_system(entry):
    """How many of the sources that an entry compiles, as one or alone, meet the system's headers."""
    united = "/Unity/" in entry["file"]
    sources = pathlib.Path(entry["file"]).read_text().splitlines() if united else [entry["file"]]
    return sum("/windows/" in source or "/msxml/" in source for source in sources if "#include" in source or not united)


library_entries = [entry for entry in json.loads(pathlib.Path(commands).read_text())
                   if "qvcommon_objects" in entry["command"]]
system = [entry for entry in library_entries if count_system(entry)]
count = sum(map(count_system, system))


def parse(entry):
    words = shlex.split(entry["command"])
    words = [word for word in words[words.index(gxx) + 1:] if word not in OF_GCC]
    for word in ("-o", "-include"):  # the latter names headers that GCC has precompiled
        while word in words:
            del words[(at := words.index(word)) : at + 2]
    return subprocess.run([clang, *options, *words], cwd=entry["directory"]).returncode


with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    failed = sum(map(bool, pool.map(parse, system)))
print(f"{count} sources in {len(system)} units, {failed} failed")
sys.exit(failed > 0 or count < 30)
