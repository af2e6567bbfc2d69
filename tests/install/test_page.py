"""Runs the code blocks of the page on installing the library as they are."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from trees import ROOT, Tree, run

PAGE = (ROOT / "docs/install.md").read_text()
START = (ROOT / "docs/get-started.md").read_text()


def blocks(heading, language):
    """The code blocks of a language under a heading; without a heading, those before the first one."""
    section = re.search(rf"^{'## ' + heading if heading else '# Install'}\n(.*?)(?=^## |\Z)", PAGE, re.M | re.S)[1]
    found = re.findall(rf"^```{re.escape(language)}\n(.*?)^```$", section, re.M | re.S)
    if not found:
        raise AssertionError(f"no {language} under {heading}")
    return found


def is_root():
    return os.getuid() == 0


class Page(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        (self.folder / "app.cpp").write_text(blocks("", "cpp")[0])
        (self.folder / "qvcommon").symlink_to(ROOT)
        (self.folder / "home").mkdir()
        self.environment = {**os.environ, "HOME": str(self.folder / "home")}
        if shutil.which("ccache"):
            cache = subprocess.run(["ccache", "--get-config", "cache_dir"], capture_output=True, text=True).stdout.strip()
            self.environment |= {"CMAKE_CXX_COMPILER_LAUNCHER": "ccache", "CCACHE_DIR": cache, "CCACHE_NOHASHDIR": "1",
                                 "CCACHE_BASEDIR": str(self.folder)}
        if is_root():  # who needs no sudo
            (self.folder / "tools").mkdir()
            (self.folder / "tools/sudo").write_text('#!/bin/sh\nexec "$@"\n')
            (self.folder / "tools/sudo").chmod(0o755)
            self.environment["PATH"] = f"{self.folder}/tools:{os.environ['PATH']}"

    def sh(self, block, folder=None):
        return run("bash", "-e", "-c", block, cwd=folder or self.folder, env=self.environment, timeout=3600)

    def test_what_it_needs(self):
        if not is_root():
            self.skipTest("packages are installed by root alone")
        self.sh(blocks("", "sh")[0])

    def test_part_of_a_program(self):
        build_and_run = blocks("As a part of your program", "sh")[0]
        for lists in blocks("As a part of your program", "cmake"):
            (self.folder / "CMakeLists.txt").write_text(lists)
            shutil.rmtree(self.folder / "installed", ignore_errors=True)
            self.assertTrue(self.sh(build_and_run).endswith("installed\n"))
            shutil.rmtree(self.folder / "build")
            self.assertEqual(run(self.folder / "installed/bin/app", cwd=self.folder), "installed\n")
            self.assertEqual({file.name for file in (self.folder / "installed").iterdir()}, {"bin", "lib"})

    def test_by_hand(self):
        install, with_cmake, with_pkg_config = blocks("By hand", "sh")
        self.assertIn(install, START)
        self.assertIn(with_cmake, START)
        self.sh(install, ROOT)
        (self.folder / "CMakeLists.txt").write_text(blocks("By hand", "cmake")[0])
        for block in (with_cmake, with_pkg_config):
            self.assertTrue(self.sh(block).endswith("installed\n"), block)

    def test_windows(self):
        run(ROOT / "scripts/package", "windows-x64", timeout=3600)
        for file in (ROOT / "build/packages/windows-x64").iterdir():
            shutil.copy(file, self.folder)
        self.sh(blocks("Windows", "sh")[0])
        program = next(self.folder.glob("*/bin/app.exe"))
        self.assertEqual(run(*Tree("windows-x64").runner, program, cwd=self.folder), "installed\n")


if __name__ == "__main__":
    unittest.main()
