"""The packages that scripts/package makes, installed and tried."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest
import zipfile

import test_page
from trees import INTERFACE, ROOT, VERSION, Tree, launcher, run

PACKAGES = ROOT / "build/packages"
LIBRARY = f"libqvcommon{INTERFACE}"
DEBIAN = [LIBRARY, "libqvcommon-dev", "qvcommon-tools", "qvcommon-doc"]


def is_installed(package):
    return subprocess.run(["dpkg", "-s", package], capture_output=True).returncode == 0


class Debian(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        run(ROOT / "scripts/package", "debian", timeout=600)
        cls.files = {file.name.split("_")[0]: file for file in (PACKAGES / "debian").glob("*.deb")}

    def field(self, package, name):
        return run("dpkg-deb", "-f", self.files[package], name).strip()

    def test_package_metadata(self):
        self.assertEqual(sorted(self.files), sorted(DEBIAN))
        version = self.field(LIBRARY, "Version")
        for package in ("libqvcommon-dev", "qvcommon-tools"):
            self.assertIn(f"{LIBRARY} (= {version})", self.field(package, "Depends"))
        for library in ("libc6", "libstdc++6", "libxml2", "zlib1g"):
            self.assertIn(library + " ", self.field(LIBRARY, "Depends"))
        self.assertEqual(self.field("qvcommon-doc", "Architecture"), "all")

    def test_lintian(self):
        if not shutil.which("lintian"):
            self.skipTest("lintian is missing")
        run("lintian", "--allow-root", "--fail-on", "error", *self.files.values())

    def test_unpacked(self):
        with tempfile.TemporaryDirectory() as folder:
            for file in self.files.values():
                run("dpkg-deb", "-x", file, folder)
            self.assertEqual(run(f"{folder}/usr/bin/qv", "text", "escape", input="a<b"), "a&lt;b")

    def test_installed(self):
        if os.getuid() != 0:
            self.skipTest("packages are installed by root alone")
        if any(map(is_installed, DEBIAN)) or shutil.which("qv"):
            self.skipTest("the library is installed on this machine already")
        self.addCleanup(run, "dpkg", "--purge", *DEBIAN)
        page = test_page.Page()
        page.setUp()
        self.addCleanup(page.doCleanups)
        page.sh(test_page.blocks("Debian packages", "sh")[0], ROOT)
        self.assertEqual(run("qv", "text", "escape", input="a<b"), "a&lt;b")
        folder = run("g++", "-print-multiarch").strip()
        library = re.escape(f"libqvcommon.so.{INTERFACE}")
        self.assertRegex(run("ldd", "/usr/bin/qv"), rf"{library} => /(usr/(bin/\.\./)?)?lib/{folder}/")
        self.assertIn("All rights reserved", pathlib.Path(f"/usr/share/doc/{LIBRARY}/copyright").read_text())
        # Without any hint at where the library is.
        with tempfile.TemporaryDirectory() as folder:
            run("cmake", "-S", "/usr/share/doc/qvcommon/examples", "-B", folder, *launcher())
            run("cmake", "--build", folder, "--target", "settings")
            self.assertIn("run 1", run(f"{folder}/settings", f"{folder}/a.xml"))
            flags = run("pkg-config", "--cflags", "--libs", "qvcommon").split()
            run("g++", "-std=c++20", ROOT / "examples/text_cleanup.cpp", *flags, "-o", f"{folder}/text_cleanup")
            self.assertEqual(run(f"{folder}/text_cleanup", input="<b>x</b>"), "x\n")


class Windows:
    """One zip, unpacked into its own folder."""

    def test_zip(self):
        tree = Tree(self.target)
        run(ROOT / "scripts/package", self.target, timeout=600)
        zips = list((PACKAGES / self.target).iterdir())
        self.assertEqual([file.name for file in zips], [f"qvcommon-{VERSION}-{self.target}.zip"])
        folder = tree.build / "unpacked"
        shutil.rmtree(folder, ignore_errors=True)
        with zipfile.ZipFile(zips[0]) as archive:
            archive.extractall(folder)
        tree.prefix, tree.work = folder / zips[0].stem, folder / "work"
        binaries = tree.prefix / "bin"
        self.assertIn(f"QvCommon {VERSION} for {self.target}\n", (tree.prefix / "README.txt").read_text())
        self.assertEqual(run(*tree.runner, binaries / "qv.exe", "text", "escape", input="a<b"), "a&lt;b")
        for name in ("qv.exe", "qvcommon.dll"):
            said, version = (re.escape(text.encode("utf-16-le")) for text in ("ProductVersion", VERSION))
            self.assertRegex((binaries / name).read_bytes(), said + rb"\0+" + version)

        # Libraries that are not part of Windows are beside the program, with their licences.
        here = {file.name for file in binaries.iterdir()}
        for file in binaries.iterdir():
            needed = re.findall(r"DLL Name: (\S+)", run("objdump", "-p", file))
            self.assertLessEqual({name for name in needed if re.match(r"lib|zlib|qv", name)}, here, file)
            self.assertNotIn(".debug_", run("objdump", "-h", file), file)
        licences = tree.prefix / "share/doc/qvcommon/licences"
        notes = (licences / "README.txt").read_text()
        for name in here - {"qv.exe", "qvcommon.dll"}:
            self.assertIn(re.sub(r"libgcc_s_.*", "libgcc_s_*.dll", name), notes)
        texts = re.findall(r"\S+\.txt", notes)
        self.assertIn("GPL-3.txt", texts)
        for text in texts:
            self.assertGreater((licences / text).stat().st_size, 1000)

        # The folder is all that a program needs.
        programs = tree.build_with_cmake()
        self.assertIn("run 1\n", run(*tree.runner, programs / "settings.exe", "a.xml", cwd=folder))


class Windows64(Windows, unittest.TestCase):
    target = "windows-x64"


class Windows86(Windows, unittest.TestCase):
    target = "windows-x86"


if __name__ == "__main__":
    unittest.main()
