"""Names in the exported headers that a system header makes macros of: macros.py COMPILER SYSTEM-HEADER INCLUDE-FOLDER

A header may use such a name between push_macro and pop_macro alone. Exit status 1 when another one is found.
"""

import pathlib
import re
import subprocess
import sys

DEFINITION = re.compile(r"^#define (\w+)(\(?)", re.M)


def macros(compiler, *options):
    """By name; whether it takes arguments."""
    listed = subprocess.run([compiler, *options, "-x", "c++", "-dM", "-E", "/dev/null"], capture_output=True, text=True,
                            check=True).stdout
    return dict(DEFINITION.findall(listed))


def used(text):
    """The names in the code of a header, and those that are followed by a bracket; not those that it deals with itself."""
    own = set(re.findall(r'#pragma push_macro\("(\w+)"\)|#(?:define|ifdef) (\w+)|defined\((\w+)\)', text))
    code = re.sub(r'^#.*|//.*|"(?:[^"\\\n]|\\.)*"', "", text, flags=re.M)
    return ({*re.findall(r"\b[A-Za-z_]\w*", code)} - {name for names in own for name in names},
            {*re.findall(r"\b([A-Za-z_]\w*)\s*\(", code)})


compiler, system, folder = sys.argv[1:]
found = 0
for charset in ("-DANSI", "-DUNICODE"):
    known = macros(compiler, charset, "-include", system)
    for name in macros(compiler, charset):
        del known[name]
    if len(known) < 10000:
        sys.exit(f"{system} defines {len(known)} macros: that cannot be all")
    for header in sorted(pathlib.Path(folder).rglob("*.h")):
        names, called = used(header.read_text())
        for name in sorted(names & known.keys()):
            if name in called or not known[name]:
                print(f"{header}: {name} is a macro of {system}")
                found = 1
sys.exit(found)
