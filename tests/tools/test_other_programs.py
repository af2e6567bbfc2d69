"""Programs of other makers read what the tool writes, and the tool reads what they write. They run on this machine even
where the tool is a Windows program: QV is its command line."""

import os
import random
import shutil
import subprocess
import tempfile
import unittest

QV = os.environ["QV"].split(";")
MEMBERS = {"empty": b"", "noise": random.Random(1).randbytes(90000), "text": b"line\r\n" * 9000,
           "sub/deep/\u00e4\u00f6.txt": b"umlauts"}


def needs(program):
    return unittest.skipUnless(shutil.which(program), f"{program} is not installed")


class OtherPrograms(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        for name, content in MEMBERS.items():
            path = os.path.join(self.folder, "in", name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "wb") as file:
                file.write(content)

    def run_here(self, *command):
        return subprocess.run(command, cwd=self.folder, check=True, capture_output=True)

    def expect_members(self, folder):
        found = {}
        for place, _, names in os.walk(os.path.join(self.folder, folder)):
            for name in names:
                path = os.path.join(place, name)
                with open(path, "rb") as file:
                    found[os.path.relpath(path, os.path.join(self.folder, folder))] = file.read()
        # Archives of the tool have bare names, and a manifest that says where they belong.
        wanted = {os.path.basename(name): content for name, content in MEMBERS.items()}
        bare = {os.path.basename(name): content for name, content in found.items() if not name.startswith("CabMan")}
        self.assertEqual(bare, wanted)

    def test_other_programs_read_archives(self):
        self.run_here(*QV, "pack", "in", "a")
        for command in ("cabextract -q -d out a.cab", "7zz x -oout a.cab"):
            program = command.split()[0]
            with self.subTest(program):
                if not shutil.which(program):
                    self.skipTest(f"{program} is not installed")
                self.run_here(*command.split())
                self.expect_members("out")
            shutil.rmtree(os.path.join(self.folder, "out"), ignore_errors=True)

    @needs("gcab")
    def test_reads_archives_of_gcab(self):
        self.run_here("gcab", "-cz", "a.cab", *(os.path.join("in", name) for name in MEMBERS))
        self.run_here(*QV, "unpack", "--no-manifest", "a.cab", "out")
        self.expect_members("out")

    @needs("convert")
    def test_imagemagick_sees_same_pixels(self):
        for source in ("rose:", "logo:", "-size 37x11 gradient:", "-size 19x5 xc:red -type Palette"):
            self.run_here("convert", *source.split(), "in.bmp")
            for before, after in (("in.bmp", "out.bmp"), ("in.bmp", "out.png"), ("out.png", "again.bmp")):
                self.run_here(*QV, "bmp", "convert", before, after)
                compared = self.run_here("compare", "-metric", "AE", "in.bmp", after, "null:")
                self.assertEqual(compared.stderr, b"0", f"{source} {after}")


if __name__ == "__main__":
    unittest.main()
