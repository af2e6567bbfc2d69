"""Locks, logs and documents that two machines share. QV_ROUNDS=N takes the lock N times on each of four programs."""

import os
import subprocess
import threading
import unittest

from two_machines import TwoMachines, reason_against

QV = os.path.join(os.environ["QV_BIN"], "qv")
ROUNDS = int(os.environ.get("QV_ROUNDS", 25))

# Holds the lock for a moment. The folder that it makes is on the server: who finds it there is not alone.
HOLD = "mkdir {0} 2> /dev/null || {{ echo shared; exit 0; }}; rmdir {0}; echo alone"


@unittest.skipIf(reason_against(), reason_against())
class Machines(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        try:
            cls.machines = TwoMachines()
        except (OSError, subprocess.SubprocessError) as refused:
            raise unittest.SkipTest(f"two machines cannot be made here: {refused}") from refused
        cls.addClassCleanup(cls.machines.close)

    def qv(self, machine, *arguments):
        return subprocess.run([*self.machines.on(machine), QV, *arguments], capture_output=True, text=True, timeout=120)

    def on_both(self, loop):
        """Four programs at once, two on each machine."""
        threads = [threading.Thread(target=loop, args=(1 + number % 2, number)) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def contents(self, name):
        """What is on the server, past the machines' caches."""
        return (self.machines.root / "brick" / name).read_text()

    def test_all_that_locks_need_holds(self):
        checked = self.qv(1, "lock", "--check", self.machines.path(1, ""))
        self.assertEqual(checked.returncode, 0, checked.stdout)
        self.assertIn("fuse.glusterfs", checked.stdout)

    def test_a_lock_has_one_holder(self):
        answers = []

        def take(machine, _):
            for _ in range(ROUNDS):
                document, mark = (self.machines.path(machine, name) for name in ("plan.doc", "mark"))
                took = self.qv(machine, "lock", "--wait", "60", document, "--", "sh", "-c", HOLD.format(mark))
                answers.append(took.stdout.strip() or took.stderr.strip())

        self.on_both(take)
        self.assertEqual(answers, ["alone"] * (4 * ROUNDS))

    def test_a_log_has_every_line(self):
        failures = []

        def log(machine, number):
            for i in range(ROUNDS):
                logged = self.qv(machine, "log", self.machines.path(machine, "log"), f"{number} {i}")
                if logged.returncode:
                    failures.append(logged.stderr)

        self.on_both(log)
        self.assertEqual(failures, [])
        lines = sorted(self.contents("log").splitlines())
        self.assertEqual(lines, sorted(f"{number} {i}" for number in range(4) for i in range(ROUNDS)))

    def test_a_document_keeps_every_value(self):
        def create(machine, number):
            for i in range(ROUNDS):
                file = self.machines.path(machine, "settings.xml")
                created = self.qv(machine, "xml", "create", file, f"r/n{number}[{i}]", "value")
                if created.returncode:
                    self.failures.append(created.stderr)

        self.failures = []
        self.on_both(create)
        self.assertEqual(self.failures, [])
        self.assertEqual(self.contents("settings.xml").count(">value<"), 4 * ROUNDS)


if __name__ == "__main__":
    unittest.main()
