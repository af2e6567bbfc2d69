"""The rules of this source tree that no compiler checks: tree.py ROOT

A rule is a function with @rule that takes the tree, a dictionary of texts by path, and yields its violations. Exits with
status 1 if there are any. tree_test.py violates each rule.
"""

import pathlib
import re
import subprocess
import sys

# From the lowest layer up. An include must lead to a lower layer, or stay in its own.
LAYERS = ("platform", "framework", "threads", "core", "files xml imaging settings system",
          "messages dialogs cabinet html", "charts", "tools")
# The folders that implement the exported headers; those of include/qvcommon/framework/ belong to framework/.
HEADERS = {
    "platform": "CodePage Export",
    "core": "Checksum Exceptions MathHelper Replacers StringHelper TimeHelper UnicodeString",
    "threads": "LockedObjects ReadWriteLock TimerThread",
    "files": "ChangeWatchers CopyTree FileFinder FilePath FileUtils LockFile MultiUserFile NetUtils SaveFile TempFile",
    "xml": "ClassFactory HistoryMgr XmlDom XmlDomElement XmlEntryTemplate XmlException XmlHelper XmlObject XmlSection",
    "settings": "AppRegistry ProfileStore RegHelper",
    "system": "DllLoader ShellVerbHelper",
    "imaging": "DIBitmap ImageHelper ParseEmf",
    "messages": "UserMessages",
    "dialogs": "Validators",
    "cabinet": "Cabinet CabinetException CabinetRecords",
    "html": "HtmlAssets HtmlDocument HtmlTreeMenu HtmlWriter NavBar SortedHtmlWriter",
    "charts": "Graph",
    "tools": "QvCommon",
}
# The two implementations of each contract. They and one peer of the benchmarks may use the operating system's headers.
SIDES = (("platform/posix/", "platform/windows/"), ("xml/dom/libxml2/", "xml/dom/msxml/"))
SYSTEM_PLACES = (*SIDES[0], *SIDES[1], "benchmarks/threads/system/")
# The headers of other packages, by folder. A header that is neither here nor of standard C++ is the operating system's.
PACKAGES = {
    "include/qvcommon/CodePage.h": r"mbctype\.h",
    "core/": r"[ti]mmintrin\.h",
    "cabinet/": r"zlib\.h",
    "imaging/": r"zlib\.h",
    "tools/qv/": r"CLI/.*",
    "tests/": r"(gtest|gmock)/.*",
    "tests/border/": r"windows\.h",
    "benchmarks/": r"(absl|benchmark|boost|dbus|libxml|unicode|wand)/.*|(glib|libdeflate|png|SDL|uemf\w*|zlib)\.h|pugixml\.hpp|"
                   r"Q(String|LockFile|SaveFile)",
}
# What platform/ may call besides its tables of system calls; System.h of each implementation says why.
PURE_CALLS = {
    "platform/posix/":
        r"dl(?:addr|close|error|sym) endpwent freelocale gete?uid getpid gettid iconv\w* iswalpha\w* "
        r"iswspace\w* localtime_r mktime newlocale nl_langinfo\w* posix_spawn_file_actions_\w+ setenv setpwent "
        r"sigismember sig\w+set strerror_r strerrordesc_np strfmon strftime sysconf tow(?:lower|upper)\w* "
        r"tzset unsetenv uselocale",
    "platform/windows/":
        r"_configthreadlocale _fileno _getmbcp _isatty CloseHandle CoCreateGuid CoUninitialize CreateEventA "
        r"CreateThread DefWindowProcA DeleteProcThreadAttributeList DispatchMessageA FreeLibrary\w* GdiFlush "
        r"GetACP GetActiveWindow GetCPInfo GetCurrent\w+ GetFocus GetLastError GetModuleHandleExA "
        r"GetProcAddress GetStringTypeW GetTickCount64 Global\w+ ILFree IsDBCSLeadByteEx LCMapStringW "
        r"LoadCursorA LocalFree MultiByteToWideChar NetApiBufferFree PostQuitMessage ResetEvent SelectObject "
        r"SetCursor SetEvent SetLastError SetStretchBltMode strnlen SystemTimeToTzSpecificLocalTime "
        r"TranslateMessage VarDateFromStr VerQueryValueW WaitForSingleObject WideCharToMultiByte",
}
# Programs that use the installed library, and what they may include from the tree.
CLIENTS = {"tools/": ("qvcommon/", "tools/"), "examples/": ("qvcommon/",), "tests/border/": ("qvcommon/",)}
LONGEST = 300
TABLES = {"include/qvcommon/" + name: "one class, a list of declarations with their contracts"
          for name in ("HtmlWriter.h", "StringHelper.h")}

SYSTEM_MACRO = re.compile(
    r"\b(_?WIN(32|64)|__WIN(32|64)__|__CYGWIN__|__MINGW(32|64)__|_MSC_VER|_?_?linux(__)?|__gnu_linux__|(__?)?unix(__)?|"
    r"__APPLE__|__ANDROID__|__GLIBC__|_POSIX_\w+|_WIN32_WINNT)\b")
# A type or a name of one system in code, a declaration that only one has, a data member that only one uses.
ONE_SYSTEM = re.compile(
    r"^[^/\n]*\b(HANDLE|HWND|HMODULE|HINSTANCE|DWORD|FILETIME|WIN32_\w+|(?:dev|gid|ino|mode|off|pid|ssize|uid)_t|"
    r"sockaddr|timespec|\w*(?:Posix|Windows|Win32|Linux)\w*)\b|[Oo]n (?:Windows|Linux) only[.,;]|"
    r"\bm_\w+.*//.*\b(?:Windows|Linux)\b", re.M)

RULES = []


def rule(check):
    RULES.append(check)
    return check


def cxx(tree):
    return ((path, text) for path, text in sorted(tree.items()) if path.endswith((".h", ".cpp")))


def includes(text):
    """Returns the includes as written, with their quotes or brackets."""
    return re.findall(r'^[ \t]*#[ \t]*include[ \t]*([<"][^>"\n]*[>"])', text, re.M)


def targets(tree, text):
    """Returns the includes that are files of the tree: as written, and the path."""
    found = ((name, path) for name in includes(text) for path in (name[1:-1], "include/" + name[1:-1]))
    return ((name, path) for name, path in found if path in tree)


def layer_of(path):
    """Returns the number of a path's layer; None for a path in no layer, such as a test."""
    folder, stem = path.split("/")[0], pathlib.PurePosixPath(path).stem
    if path.startswith("include/qvcommon/framework/"):
        folder = "framework"
    elif folder == "include":
        folder = next((folder for folder, stems in HEADERS.items() if stem in stems.split()), None)
    return next((number for number, layer in enumerate(LAYERS) if folder in layer.split()), None)


@rule
def systems_keep_to_their_places(tree):
    for path, text in cxx(tree):
        if path.startswith(SYSTEM_PLACES):
            continue
        known = "|".join([r"[a-z_]+", *(names for folder, names in PACKAGES.items() if path.startswith(folder))])
        for name in includes(text):
            if name[0] == "<" and not re.fullmatch(known, name[1:-1]):
                yield f"{path} includes {name}"
        for line in re.findall(r"^[ \t]*#[ \t]*(?:if|el)\w*[ \t]+(.*)", text, re.M):
            if SYSTEM_MACRO.search(line):
                yield f"{path} asks for a system: {line}"


@rule
def contracts_name_no_system(tree):
    """Comments may describe differences of the systems."""
    for path, text in cxx(tree):
        if re.fullmatch(r"platform/\w+\.h", path):
            yield from (f"{path} is of one system: {match[1] or match[0]}" for match in ONE_SYSTEM.finditer(text))


@rule
def system_calls_go_through_the_table(tree):
    for path, text in cxx(tree):
        pure = next((calls for side, calls in PURE_CALLS.items() if path.startswith(side)), None)
        if pure is None or re.search(r"/(System|SystemCall|Status)\.(h|cpp)$", path):
            continue
        for name in re.findall(r"(?<![\w>:])::([A-Za-z_]\w*)\(", re.sub(r"//.*", "", text)):
            if not re.fullmatch("|".join(pure.split()), name):
                yield f"{path} calls {name}"


@rule
def both_sides_answer(tree):
    """A source directly in the folder of a side implements a contract, and the other side has one of the same name. A
    helper has no contract's name and has its own header beside it; files in deeper folders are helpers, too."""
    for side, other in (sides for pair in SIDES for sides in (pair, pair[::-1])):
        contract = "platform/{}.h" if side.startswith("platform/") else side + "{}.cpp"
        for path in sorted(path for path in tree if re.fullmatch(side + r"\w+\.cpp", path)):
            stem = path[len(side):-4]
            if side + stem + ".h" in tree and "platform/" + stem + ".h" not in tree:
                continue
            if contract.format(stem) not in tree:
                yield f"{path} answers no contract"
            if other + stem + ".cpp" not in tree:
                yield f"{path} has no counterpart in {other}"


@rule
def includes_run_down(tree):
    for path, text in cxx(tree):
        layer = layer_of(path)
        for name, target in targets(tree, text) if layer is not None else ():
            place = next((place for place in SYSTEM_PLACES if target.startswith(place)), "")
            # A backend of the DOM may use what its system's side of the platform has.
            shared = any(path.startswith(dom) and place == side for side, dom in zip(*SIDES))
            if (layer_of(target) or 0) > layer or not (shared or path.startswith(place)):
                yield f"{path} includes {name} of a higher layer or a system's own"


@rule
def includes_make_no_circle(tree):
    done, way, circles = set(), [], []

    def walk(path):
        if path in way:
            circles.append(" > ".join(way[way.index(path):] + [path]))
        elif path not in done:
            done.add(path)
            way.append(path)
            for _, target in targets(tree, tree[path]):
                walk(target)
            way.pop()

    for path, _ in cxx(tree):
        walk(path)
    return circles


@rule
def exported_headers_are_complete(tree):
    whole = includes(tree["include/qvcommon/QvCommon.h"])
    exported = {path: text for path, text in cxx(tree) if path.startswith("include/")}
    for path, text in exported.items():
        name = path.removeprefix("include/")
        for other in includes(text):
            if other[0] == '"' and "include/" + other[1:-1] not in tree:
                yield f"{path} includes {other}"
        if layer_of(path) is None:
            yield f"{path} is not in HEADERS"
        if name not in ("qvcommon/Export.h", "qvcommon/QvCommon.h"):
            if whole.count(f'"{name}"') != 1:
                yield f"QvCommon.h does not include {name} once"
            if name.count("/") == 1 and f"`{name[9:]}`" not in tree["README.md"]:
                yield f"README.md does not name {name}"


@rule
def clients_see_exported_headers_alone(tree):
    for path, text in cxx(tree):
        own = next((own for folder, own in CLIENTS.items() if path.startswith(folder)), "")
        others = (name for name in includes(text) if name[0] == '"' and not name[1:].startswith(own))
        yield from (f"{path} includes {name}" for name in others)


@rule
def files_are_short(tree):
    for path, text in sorted(tree.items()):
        lines = text.count("\n")
        data = re.match(r"(tests/data|fuzz/seeds|abi|docs)/|.*\.md$|\.git", path)
        if lines > LONGEST and not data and path not in TABLES:
            yield f"{path} has {lines} lines"


def size(tree, belongs):
    """The number of lines, neither blank nor comment, of the C++ files whose folder belongs."""
    lines = (line.strip() for path, text in cxx(tree) if belongs(path.split("/")[0]) for line in text.split("\n"))
    return sum(1 for line in lines if line and not line.startswith("//"))


@rule
def tables_are_whole(tree):
    """Every row of a table in a page has as many cells as its header."""
    for path, text in sorted(tree.items()):
        if path.endswith(".md"):
            for table in re.findall(r"(?:^\|.*\n)+", re.sub(r"^```.*?^```$", "", text, flags=re.M | re.S), re.M):
                header, *rows = (re.sub(r"`[^`]*`|\\\|", "", row).count("|") for row in table.splitlines())
                if any(cells != header for cells in rows):
                    yield f"{path} has a broken table: {table.splitlines()[0]}"


@rule
def tests_are_a_third_at_most(tree):
    tests = size(tree, lambda folder: folder == "tests")
    code = size(tree, lambda folder: folder not in ("tests", "benchmarks", "fuzz", "examples"))
    if 3 * tests > code:
        yield f"tests have {tests} lines, more than a third of the {code} of the code"


def read(root):
    """Returns the texts that version control tracks or would add. The tree may belong to another user."""
    command = ["git", "-c", "safe.directory=*", "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    names = subprocess.run(command, cwd=root, stdout=subprocess.PIPE, check=True, text=True).stdout.split("\0")
    files = {name: root / name for name in names if name and (root / name).is_file()}
    return {name: file.read_text(errors="replace") for name, file in files.items()}


def main(root):
    tree = read(pathlib.Path(root))
    findings = [f"{finding} ({check.__name__})" for check in RULES for finding in check(tree)]
    print(*findings, f"{len(tree)} files, {len(RULES)} rules, {len(findings)} findings", sep="\n")
    return 1 if findings or not tree else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
