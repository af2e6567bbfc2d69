"""Locks, logs and documents that two machines share. QV_ROUNDS=N takes the lock N times on each of four programs."""

import collections
import contextlib
import os
import random
import signal
import subprocess
import threading
import time
import unittest

from two_machines import TwoMachines, reason_against

QV = os.path.join(os.environ["QV_BIN"], "qv")
ROUNDS = int(os.environ.get("QV_ROUNDS", 25))

# The command of a lock's holder. The mark is a file of the host that both machines see: its own lock, which is not under test,
# ends with the process and shows whether there is another holder.
HOLD = "exec 0<> {}; flock -n 0 || {{ echo shared; exit 0; }}; echo alone"
KILLED_OF = 8


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
        """A file on the server, past the machines' caches."""
        return (self.machines.root / "brick" / name).read_text()

    def test_the_file_system_meets_the_needs_of_locks(self):
        checked = self.qv(1, "lock", "--check", self.machines.path(1, ""))
        self.assertEqual(checked.returncode, 0, checked.stdout)
        self.assertIn("fuse.glusterfs", checked.stdout)

    def hold(self, machine, command, *options):
        return subprocess.Popen([*self.machines.on(machine), QV, "lock", *options, self.machines.path(machine, "plan.doc"),
                                 "--", "sh", "-c", command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                start_new_session=True)

    def test_a_lock_has_one_holder_when_holders_are_killed(self):
        answers = collections.Counter()
        mark = self.machines.root / "mark"

        def take(machine, number):
            chance = random.Random(number)
            for _ in range(ROUNDS):
                holder = self.hold(machine, HOLD.format(mark), "--wait", "60")
                killed = chance.randrange(KILLED_OF) == 0
                if killed:
                    self.kill_soon(holder, chance)
                answer = holder.communicate(timeout=120)[0].strip()
                answers["killed" if killed and answer in ("", "alone") else answer] += 1

        self.on_both(take)
        print("lock rounds:", dict(answers))
        self.assertEqual(set(answers), {"alone", "killed"})
        self.assertGreaterEqual(answers["alone"] + answers["killed"], 4 * ROUNDS)

    @staticmethod
    def kill_soon(holder, chance):
        """Kills the tool alone, whose command continues and keeps the lock, or both."""
        with contextlib.suppress(subprocess.TimeoutExpired):
            holder.wait(chance.uniform(0, 0.1))
        with contextlib.suppress(ProcessLookupError):
            (os.killpg if chance.randrange(2) else os.kill)(holder.pid, signal.SIGKILL)

    def lose(self, lose, patience):
        """Machine 1 holds the lock and is lost: machine 2 gets the lock while the command of machine 1 still runs."""
        holder = self.hold(1, "echo held; exec sleep 600")
        self.addCleanup(holder.communicate)
        self.addCleanup(os.killpg, holder.pid, signal.SIGKILL)
        self.assertEqual(holder.stdout.readline(), "held\n")
        lose()
        start = time.monotonic()
        taken = subprocess.run([*self.machines.on(2), QV, "lock", "--wait", str(patience), self.machines.path(2, "plan.doc"),
                                "--", "true"], capture_output=True, text=True, timeout=2 * patience)
        self.assertEqual(taken.returncode, 0, taken.stderr)
        print("taken over after %.0f s" % (time.monotonic() - start))

    def test_a_machine_whose_client_is_killed_loses_its_lock(self):
        self.addCleanup(self.machines.mount, 1)
        self.lose(lambda: self.machines.kill_client(1), 60)

    @unittest.skipUnless(os.environ.get("QV_TEST_LARGE"), "takes minutes; QV_TEST_LARGE=1 asks for it")
    def test_a_machine_whose_network_is_cut_loses_its_lock(self):
        self.addCleanup(self.machines.mount, 1)
        self.addCleanup(self.machines.connect, 1, True)
        self.lose(lambda: self.machines.connect(1, False), 300)

    def repeat_on_both(self, command):
        """Four programs run `command(machine, number, i)` of the tool ROUNDS times each. All succeed."""
        failures = []

        def loop(machine, number):
            for i in range(ROUNDS):
                done = self.qv(machine, *command(machine, number, i))
                if done.returncode:
                    failures.append(done.stderr)

        self.on_both(loop)
        self.assertEqual(failures, [])

    def test_a_log_has_every_line(self):
        self.repeat_on_both(lambda machine, number, i: ("log", self.machines.path(machine, "log"), f"{number} {i}"))
        lines = sorted(self.contents("log").splitlines())
        self.assertEqual(lines, sorted(f"{number} {i}" for number in range(4) for i in range(ROUNDS)))

    def test_a_document_keeps_every_value(self):
        self.repeat_on_both(lambda machine, number, i: ("xml", "create", self.machines.path(machine, "settings.xml"),
                                                        f"r/n{number}[{i}]", "value"))
        self.assertEqual(self.contents("settings.xml").count(">value<"), 4 * ROUNDS)


if __name__ == "__main__":
    unittest.main()
