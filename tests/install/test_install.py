"""What `cmake --install` installs: complete, found by CMake and pkg-config after a move, and enough to build and run the
examples. Needs the presets linux and windows-x64 built."""

import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

from trees import INTERFACE, ROOT, VERSION, Tree, launcher, run

METAFILE = ROOT / "tests/data/emf/inkscape.emf"


class Examples:
    """Each example, run as its first lines say. The classes below build it in different ways."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=self.tree.work))
        self.addCleanup(shutil.rmtree, self.folder)

    def command(self, example, *arguments):
        return [str(word) for word in (*self.tree.runner, self.programs / (example + self.tree.suffix), *arguments)]

    def run_example(self, example, *arguments, **options):
        return run(*self.command(example, *arguments), cwd=self.folder, **options)

    def start(self, first_line, example, *arguments):
        """Starts a program and waits for its first line."""
        program = subprocess.Popen(self.command(example, *arguments), cwd=self.folder, stdout=subprocess.PIPE, text=True)
        self.addCleanup(program.stdout.close)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        self.assertEqual(program.stdout.readline().strip(), first_line)
        return program

    def page(self, *arguments):
        """What an example writes as a page."""
        self.run_example(*arguments)
        return (self.folder / "page/index.html").read_text(encoding="latin-1")

    def test_report_page(self):
        page = self.page("report_page", "page")
        for part in ("Fruit &amp; prices", "Prices stay &lt; 3", "TreeMenu.js", "<svg "):
            self.assertIn(part, page)
        for asset in (self.tree.prefix / "share/qvcommon/html").iterdir():
            self.assertEqual((self.folder / "page" / asset.name).read_bytes(), asset.read_bytes())

    def test_report_bars(self):
        for order, first in (("Price", "Pears: 2.40"), ("Name", "Apples: 2.80")):
            self.run_example("report_bars", "page", "fruit:by=" + order)
            page = self.page("report_bars", "page")  # the choice was kept
            self.assertIn("<ul><li>" + first, page)
            self.assertNotIn("fruit:by=" + order, page)  # the current choice is no link
        self.assertIn("no choice", self.run_example("report_bars", "page", "fruit:by=Colour", status=1))

    def test_from_cfile(self):
        self.assertEqual(self.run_example("from_cfile", "a.txt"), "before: 1\nnow: 2\n")
        self.assertEqual(self.run_example("from_cfile", "a.txt"), "before: 3\nnow: 4\n")
        self.assertEqual([file.name for file in self.folder.iterdir()], ["a.txt"])
        self.assertRegex(self.run_example("from_cfile", "none/a.txt", status=1), r"^from_cfile: .*none.a\.txt.*\n$")

    def test_settings(self):
        self.assertIn("run 1\n", self.run_example("settings", "a.xml"))
        self.assertIn('run 2\n<settings><runs>2</runs><user/><user/><user name="Anna &amp; Bert"/></settings>',
                      self.run_example("settings", "a.xml"))
        (self.folder / "bad.xml").write_text("<settings>")
        self.assertIn("bad.xml, line 1: ", self.run_example("settings", "bad.xml", status=1))

    def test_open_recent(self):
        self.run_example("open_recent", "none.txt", status=1)  # what cannot be opened is not remembered
        self.assertNotIn("none.txt", self.run_example("open_recent", "--list"))

    def test_text_filters(self):
        lines = self.run_example("text_filters", "abc").splitlines()
        self.assertEqual(lines[0], "given: abc (3 bytes, 3 UTF-16 units)")
        has_plugin = list((self.programs / "plugins").glob("upper*"))
        self.assertEqual(lines[1:], ["upper: ABC (3 bytes, 3 UTF-16 units)"] if has_plugin else [])

    def test_shared_document(self):
        lines = [f"line {number}" for number in range(4)]
        writers = [subprocess.Popen(self.command("shared_document", "plan.txt", line), cwd=self.folder,
                                    stdout=subprocess.DEVNULL) for line in lines]
        self.assertEqual([writer.wait() for writer in writers], [0] * len(lines))
        self.assertEqual(sorted((self.folder / "plan.txt").read_text().splitlines()), lines)
        self.assertEqual([file.name for file in self.folder.iterdir()], ["plan.txt"])

    def test_pack_folder(self):
        (self.folder / "in/deep").mkdir(parents=True)
        (self.folder / "in/deep/a.txt").write_text("hello")
        self.assertIn("unpacked a.txt", self.run_example("pack_folder", "in", "in.cab", "out"))
        self.assertEqual((self.folder / "out/deep/a.txt").read_text(), "hello")
        self.assertIn("none", self.run_example("pack_folder", "in", "none/in.cab", "out", status=1))
        if not self.tree.windows:  # where a signal can be sent to another process
            with open(self.folder / "in/large", "wb") as large:
                large.truncate(1 << 29)
            packer = self.start("packing", "pack_folder", "in", "large.cab", "out")
            packer.send_signal(signal.SIGINT)
            self.assertEqual(packer.wait(60), 1)
            self.assertEqual(sorted(file.name for file in self.folder.iterdir()), ["in", "in.cab", "out"])

    def test_watched_folder(self):
        name = "qv-watched-" + self.folder.name
        listener = self.start("listening", "answer", name)
        watcher = self.start("watching", "watched_folder", ".", name)
        (self.folder / "stop").write_text("")
        self.assertEqual(watcher.stdout.readline().strip(), "changed")
        self.assertEqual([watcher.wait(60), listener.wait(60)], [0, 0])
        self.run_example("watched_folder", "none", status=1)

    def test_ask_and_answer(self):
        name = "qv-example-" + self.folder.name
        answerer = self.start("listening", "answer", name)
        self.run_example("answer", name, status=1)
        self.assertEqual(self.run_example("ask", name, "how are you", "bye"), "how are you: HOW ARE YOU\nbye: BYE\n")
        self.assertEqual(answerer.wait(60), 0)
        self.run_example("ask", name, "anybody?", status=1)

    def test_background_timer(self):
        self.assertEqual(self.run_example("background_timer", "2"), "started\n2\n1\nstopped\n")

    def test_text_cleanup(self):
        page = "<p>pears  are&amp;were</p><p>apples<li>[loud] ones<p>Apples"
        self.assertEqual(self.run_example("text_cleanup", input=page), "* LOUD ones, apples and pears are&were\n")

    def test_metafile_list(self):
        shutil.copy(METAFILE, self.folder / "a.emf")
        listing = self.run_example("metafile_list", "a.emf")
        self.assertRegex(listing, r"(?s)^bounds .*    1 EMR_EOF\n.*    1 EMR_HEADER\n")
        (self.folder / "cut.emf").write_bytes(METAFILE.read_bytes()[:-30])
        self.run_example("metafile_list", "cut.emf", status=1)

    def test_wrong_usage(self):
        for source in (ROOT / "examples").glob("*.cpp"):
            if source.stem != "text_cleanup":
                self.assertIn("usage: " + source.stem, self.run_example(source.stem, status=2))


class WithCMake(Examples, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.tree = Tree("linux").install()
        cls.programs = cls.tree.build_with_cmake()

    def test_examples_have_their_plugin(self):
        self.assertTrue((self.programs / "plugins/upper.so").exists())

    def test_what_is_installed(self):
        files = {str(path.relative_to(self.tree.prefix)) for path in self.tree.prefix.rglob("*")}
        self.assertLessEqual({"bin/qv", "lib/libqvcommon.so", f"lib/libqvcommon.so.{INTERFACE}",
                              "lib/pkgconfig/qvcommon.pc",
                              "lib/cmake/QvCommon/QvCommonConfig.cmake", "include/qvcommon/QvCommon.h",
                              "share/qvcommon/html/TreeMenu.js", "share/doc/qvcommon/docs/versions.md"}, files)
        self.assertFalse([file for file in files if file.endswith((".py", ".cmake.in"))])
        for text in (*self.tree.prefix.rglob("*.cmake"), *self.tree.prefix.rglob("*.pc")):
            self.assertNotIn(str(self.tree.build), text.read_text(), text)
        self.assertIn(f"SONAME               libqvcommon.so.{INTERFACE}\n",
                      run("objdump", "-p", self.tree.prefix / "lib/libqvcommon.so"))
        self.assertEqual(run(self.tree.prefix / "bin/qv", "text", "escape", input="a<b"), "a&lt;b")

    def test_versions_that_are_accepted(self):
        project = self.folder / "CMakeLists.txt"
        major, minor, _ = map(int, VERSION.split("."))
        for wanted, status in ((f"{major}.{minor}", 0), (VERSION + " EXACT", 0), (f"{major}.{minor + 1}", 1),
                               (str(major + 1), 1)):
            project.write_text("cmake_minimum_required(VERSION 3.25)\nproject(wants NONE)\n"
                               f"find_package(QvCommon {wanted} REQUIRED)\n")
            run("cmake", "-S", self.folder, "-B", self.folder / "build", f"-DCMAKE_PREFIX_PATH={self.tree.prefix}",
                status=status)

    def test_as_a_subdirectory(self):
        (self.folder / "CMakeLists.txt").write_text(
            f"cmake_minimum_required(VERSION 3.25)\nproject(uses CXX)\nadd_subdirectory({ROOT} qvcommon)\n"
            f"add_executable(settings {ROOT}/examples/settings.cpp)\n"
            "target_link_libraries(settings PRIVATE QvCommon::QvCommon)\n"
            "install(TARGETS settings)\n")
        build = self.folder / "build"
        run("cmake", "-S", self.folder, "-B", build, "-G", "Ninja", *launcher())
        run("ninja", "-C", build, "CMakeFiles/settings.dir/settings.cpp.o", status=None)
        targets = run("ninja", "-C", build, "-t", "targets", "all")
        self.assertIn("libqvcommon.so", targets)
        for absent in ("qvcommon_tests", "gtest", "tools/qv"):
            self.assertNotIn(absent, targets)
        self.assertNotIn("QvCommonConfig", (build / "qvcommon/cmake_install.cmake").read_text())
        self.assertIn("libqvcommon", (build / "qvcommon/cmake_install.cmake").read_text())


class WithPkgConfig(Examples, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.tree = Tree("linux").install()
        cls.programs = cls.tree.build_with_pkg_config()

    def test_version(self):
        ask = ["pkg-config", "--modversion", "qvcommon"]
        self.assertEqual(run(*ask, env=self.tree.pkg_config_environment()), VERSION + "\n")


class OnWindows(Examples, unittest.TestCase):
    """Runs first, by its name: Wine's server was started before the tests, and exits after an idle minute."""

    @classmethod
    def setUpClass(cls):
        cls.tree = Tree("windows-x64").install()
        cls.programs = cls.tree.build_with_cmake()

    def test_built_by_pkg_config(self):
        built = self.tree.build_with_pkg_config("x86_64-w64-mingw32-g++-posix", "settings")
        shutil.copy(built / "settings.exe", self.programs)
        self.test_settings()


if __name__ == "__main__":
    unittest.main()
