"""Tests tree.py with an artificial tree that violates each rule."""

import unittest

import tree

TREE = {
    "README.md": "`FilePath.h`",
    "benchmarks/threads/Lock.cpp": "#include <pthread.h>\n#include <benchmark/benchmark.h>\n",
    "benchmarks/threads/system/Lock.h": "#include <pthread.h>\n",
    "cabinet/Long.cpp": "#include <zlib.h>\n" * 301,
    "core/MathHelper.cpp": "#include <sys/stat.h>\n#include \"qvcommon/FilePath.h\"\n#if defined(_WIN32)\n",
    "docs/text.md": "| `a|b` | c |\n| --- | --- |\n| d \\| e | f |\n\n```\n| a |\n| b | c |\n```\n| g | h |\n| i|j | k |\n",
    "examples/answer.cpp": "#include \"qvcommon/FilePath.h\"\n#include \"core/MathHelper.h\"\n",
    "files/FilePath.cpp": "#include \"platform/posix/UniqueFd.h\"\n#  elif __APPLE__ && X\n#ifndef __WIN32_STORY\n",
    "framework/Name.h": "#include \"framework/Other.h\"\n",
    "framework/Other.h": "  #  include \"framework/Name.h\" // why\n#include \"qvcommon/MathHelper.h\"\n",
    "include/qvcommon/Export.h": "#if defined(QVCOMMON_DLL_EXPORT)\n",
    "include/qvcommon/FilePath.h": "#include \"files/Private.h\"\n#include \"qvcommon/Export.h\"\n",
    "include/qvcommon/MathHelper.h": "",
    "include/qvcommon/QvCommon.h": "#include \"qvcommon/FilePath.h\"\n#include \"qvcommon/Unknown.h\"\n",
    "include/qvcommon/StringHelper.h": "\n" * 301,
    "include/qvcommon/Unknown.h": "",
    "platform/File.h": "#include <io.h>\nHANDLE Handle();  // a descriptor on Linux\nint m_fd;  // on Linux\n",
    "platform/Time.h": "#include <ctime>\n/// On Windows only, whose zones have no history.\nint Zone();\n",
    "platform/posix/Clock.cpp": "#include <unistd.h>\n#include \"framework/Name.h\"\nint i = ::getpid() + ::open(name);",
    "platform/posix/Time.cpp": "#ifdef __linux__\n",
    "platform/posix/UniqueFd.cpp": "",
    "platform/posix/UniqueFd.h": "",
    "platform/posix/messages/Server.cpp": "",
    "platform/windows/Clock.cpp": "",
    "tests/ManyTest.cpp": "int i;\n// why\n" * 109,
    "tests/border/ThrowTest.cpp": "#include <gtest/gtest.h>\n#include \"tests/support/Tool.h\"\n",
    "tools/qv/Main.cpp": "#include <CLI/CLI.hpp>\n#include \"tools/qv/Command.h\"\n#include \"platform/File.h\"\n",
    "xml/dom/libxml2/Problem.cpp": "#include <libxml/tree.h>\n",
    "xml/dom/libxml2/Problem.h": "",
    "xml/dom/msxml/Nodes.cpp": "",
}
FINDINGS = {
    "systems_keep_to_their_places": [
        "benchmarks/threads/Lock.cpp includes <pthread.h>", "core/MathHelper.cpp includes <sys/stat.h>",
        "core/MathHelper.cpp asks for a system: defined(_WIN32)",
        "files/FilePath.cpp asks for a system: __APPLE__ && X",
        "platform/File.h includes <io.h>"],
    "contracts_name_no_system": [
        "platform/File.h is of one system: HANDLE", "platform/File.h is of one system: m_fd;  // on Linux",
        "platform/Time.h is of one system: On Windows only,"],
    "system_calls_go_through_the_table": ["platform/posix/Clock.cpp calls open"],
    "both_sides_answer": [
        "platform/posix/Clock.cpp answers no contract",
        "platform/posix/Time.cpp has no counterpart in platform/windows/",
        "platform/windows/Clock.cpp answers no contract",
        "xml/dom/msxml/Nodes.cpp has no counterpart in xml/dom/libxml2/"],
    "includes_run_down": [
        f"{include} of a higher layer or a system's own" for include in (
            'core/MathHelper.cpp includes "qvcommon/FilePath.h"',
            'files/FilePath.cpp includes "platform/posix/UniqueFd.h"',
            'framework/Other.h includes "qvcommon/MathHelper.h"',
            'platform/posix/Clock.cpp includes "framework/Name.h"')],
    "includes_make_no_circle": ["framework/Name.h > framework/Other.h > framework/Name.h"],
    "exported_headers_are_complete": [
        'include/qvcommon/FilePath.h includes "files/Private.h"',
        "QvCommon.h does not include qvcommon/MathHelper.h once",
        "README.md does not name qvcommon/MathHelper.h", "QvCommon.h does not include qvcommon/StringHelper.h once",
        "README.md does not name qvcommon/StringHelper.h", "include/qvcommon/Unknown.h is not in HEADERS",
        "README.md does not name qvcommon/Unknown.h"],
    "clients_see_exported_headers_alone": [
        'examples/answer.cpp includes "core/MathHelper.h"',
        'tests/border/ThrowTest.cpp includes "tests/support/Tool.h"',
        'tools/qv/Main.cpp includes "platform/File.h"'],
    "files_are_short": ["cabinet/Long.cpp has 301 lines"],
    "tables_are_whole": ["docs/text.md has a broken table: | g | h |"],
    "tests_are_a_third_at_most": ["tests have 111 lines, more than a third of the 328 of the code"],
}


class TreeTest(unittest.TestCase):
    def test_each_rule(self):
        self.maxDiff = None
        self.assertTrue(all(FINDINGS.values()))
        self.assertEqual({check.__name__: list(check(TREE)) for check in tree.RULES}, FINDINGS)


if __name__ == "__main__":
    unittest.main()
