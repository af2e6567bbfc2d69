"""Interrupts and terminations at random moments: targets are whole or as they were, no other file stays, and the status is
that of the signal. QV_ROUNDS sets the number of rounds for each command."""

import filecmp
import os
import random
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

QV = os.path.join(os.environ["QV_BIN"], "qv")
ROUNDS = int(os.environ.get("QV_ROUNDS", "8"))
DOCUMENT = "<r>" + "<i>x</i>" * 20000 + "</r>"


def files_below(folder):
    return {os.path.relpath(os.path.join(place, name), folder) for place, _, names in os.walk(folder) for name in names}


class Signals(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        # Temporary files go below the folder that is compared.
        self.environment = os.environ | {"TMPDIR": self.path("temporary")}
        for name in ("in", "temporary"):
            os.mkdir(self.path(name))
        for i in range(40):
            with open(self.path(f"in/{i}"), "wb") as file:
                file.write(random.randbytes(40000))
        subprocess.run([QV, "pack", self.path("in"), self.path("good.cab")], check=True)

    def path(self, name):
        return os.path.join(self.folder, name)

    def prepare(self):
        for name in ("out", "report"):
            shutil.rmtree(self.path(name), ignore_errors=True)
        shutil.copytree(self.path("in"), self.path("gone"), dirs_exist_ok=True)
        shutil.copy(self.path("good.cab"), self.path("a.cab"))
        with open(self.path("d.xml"), "w", encoding="utf-8") as file:
            file.write(DOCUMENT)
        # The lock's files may stay: they block no one, and the next holder removes them.
        return files_below(self.folder) | {"d.lck", "d.lid"}

    def interrupt(self, command, longest):
        process = subprocess.Popen([QV, *command], cwd=self.folder, env=self.environment, stderr=subprocess.DEVNULL)
        time.sleep(random.random() * longest)
        number = random.choice([signal.SIGINT, signal.SIGTERM])
        process.send_signal(number)
        self.assertIn(process.wait(60), (0, -number))

    def test_missing_temporary_folder_fails_at_once(self):
        os.rmdir(self.path("temporary"))
        for command in (["pack", "in", "new.cab"], ["unpack", "good.cab", "out"]):
            done = subprocess.run([QV, *command], cwd=self.folder, env=self.environment, timeout=60, check=False,
                                  stderr=subprocess.PIPE, text=True)
            self.assertEqual(done.returncode, 1, done.stderr)
            self.assertIn("temporary", done.stderr)

    def test_state_left_by_the_parent_is_undone(self):
        def status(state, command):
            return subprocess.run([QV, "lock", "d", "--", "sh", "-c", command], cwd=self.folder, preexec_fn=state,
                                  check=False, stderr=subprocess.DEVNULL).returncode
        self.assertEqual(status(lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN), "exit 7"), 7)
        self.assertNotEqual(status(lambda: os.close(1), "echo into the lock"), 0)

    def check_targets(self):
        subprocess.run([QV, "list", "a.cab"], cwd=self.folder, check=True, stdout=subprocess.DEVNULL)
        with open(self.path("d.xml"), encoding="utf-8") as file:
            self.assertIn(file.read(), (DOCUMENT, DOCUMENT.replace("<i>x", "<i>new", 1)))
        for name in files_below(self.path("out")):
            self.assertTrue(filecmp.cmp(self.path("in/" + name), self.path("out/" + name), shallow=False), name)

    def test_interruption_leaves_no_partial_files(self):
        random.seed(os.getpid())
        commands = (["pack", "in", "a.cab"], ["unpack", "good.cab", "out"], ["copy", "in", "out"],
                    ["xml", "set", "d.xml", "r/i", "new"], ["report", "in", "-o", "report"], ["delete", "gone"])
        for command in commands:
            self.prepare()
            started = time.monotonic()
            subprocess.run([QV, *command], cwd=self.folder, check=True)
            longest = time.monotonic() - started
            for _ in range(ROUNDS):
                before = self.prepare()
                with self.subTest(command=command):
                    self.interrupt(command, longest)
                    self.check_targets()
                    extra = {name for name in files_below(self.folder) - before if not name.startswith(("out/", "report/"))}
                    self.assertEqual(extra, set())


if __name__ == "__main__":
    unittest.main()
