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
OF_GCC = {"-fno-keep-inline-dllexport", "-Wconversion"}

triple = ask("-dumpmachine")
library = pathlib.Path(ask("-print-file-name=include/c++"))
options = [f"--target={triple.replace('w64-mingw32', 'w64-windows-gnu')}", "-stdlib++-isystem", library,
           "-isystem", library / triple, "-fsyntax-only", "-Wno-unused-command-line-argument", "-Werror"]
system = [entry for entry in json.loads(pathlib.Path(commands).read_text())
          if "qvcommon_objects" in entry["command"] and ("/windows/" in entry["file"] or "/msxml/" in entry["file"])]


def parse(entry):
    words = shlex.split(entry["command"])
    words = [word for word in words[words.index(gxx) + 1:] if word not in OF_GCC]
    at = words.index("-o")
    return subprocess.run([clang, *options, *words[:at], *words[at + 2:]], cwd=entry["directory"]).returncode


with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    failed = sum(map(bool, pool.map(parse, system)))
print(f"{len(system)} sources, {failed} failed")
sys.exit(failed > 0 or len(system) < 30)
