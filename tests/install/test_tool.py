"""The installed tool: every command with wrong arguments, missing files, closed and full pipes."""

import os
import pathlib
import pty
import re
import signal
import subprocess
import tempfile
import unittest

from trees import VERSION, Tree, run

# Each command with valid arguments and missing files.
MISSING = {
    "backup": "none", "bmp convert": "none out", "bmp info": "none", "chart": "bar none", "copy": "none to",
    "crc": "none",
    "delete": "none", "emf list": "none", "emf normalise": "none out", "find": "none", "list": "none",
    "lock": "none/file -- true", "log": "none/file text", "pack": "none out.cab", "report": "none -o out",
    "send": "qv-no-listener text", "unpack": "none.cab out", "watch": "none", "xml get": "none a", "xml set": "none a b",
    "xml create": "none/file a"}
# These wait, or accept any standard input.
OTHERS = {"help", "listen"} | {"text " + name for name in (
    "csv-join csv-split escape plain sort strip-tags title-case unescape url-escape url-unescape wrap xml-escape "
    "xml-unescape").split()}
TAKES_NOTHING = {"help"} | {name for name in OTHERS if name.startswith("text ")} - {"text wrap"}
TAKES_ANY_NUMBER = {"crc", "lock"}


class Tool:
    @classmethod
    def setUpClass(cls):
        cls.tree = Tree(cls.preset).install()

    def setUp(self):
        folder = tempfile.TemporaryDirectory(dir=self.tree.work)
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def command(self, *words):
        return [str(word) for word in (*self.tree.runner, self.tree.prefix / "bin" / ("qv" + self.tree.suffix), *words)]

    def qv(self, *words, status=0, **options):
        return run(*self.command(*words), status=status, cwd=self.folder, stdin=subprocess.DEVNULL, **options)

    def test_missing_files(self):
        for command, arguments in MISSING.items():
            with self.subTest(command):
                said = self.qv(*command.split(), *arguments.split(), status=1)
                self.assertRegex(said, r"^qv: .")
                self.assertNotRegex(said, r"terminate|exception")
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_version(self):
        self.assertEqual(self.qv("--version"), f"qv {VERSION}\n")

    def test_help(self):
        for command in ("", "text wrap"):
            self.assertEqual(self.qv("help", *command.split()), self.qv(*command.split(), "--help"))

    def test_closed_output_pipe(self):
        for name in range(3000):
            (self.folder / f"a rather long name, so that they do not fit into a pipe {name}").touch()
        for signals in (True, False):  # with the signal that ends a writer on Linux, and without
            with subprocess.Popen(self.command("find", "."), cwd=self.folder, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, restore_signals=signals) as program:
                self.assertTrue(program.stdout.read(1))
                program.stdout.close()
                self.assertEqual(program.stderr.read(), b"")
            self.assertEqual(program.returncode, -signal.SIGPIPE if signals and not self.tree.windows else 1)


class OnLinux(Tool, unittest.TestCase):
    preset = "linux"

    def commands(self, *path):
        """All commands without subcommands, as help lists them."""
        below = re.search(r"Subcommands:\n((?:  .*\n)+)", self.qv(*path, "--help"))
        names = re.findall(r"^  (\S+) ", below[1], re.M) if below else []
        return [leaf for name in names for leaf in self.commands(*path, name)] or [" ".join(path)]

    def test_every_command(self):
        commands = self.commands()
        self.assertEqual(set(commands), set(MISSING) | OTHERS)
        for command in commands:
            with self.subTest(command):
                self.assertRegex(self.qv(*command.split(), "--help"), rf"Examples?:\s[^\n]*qv {command}\b")
                self.assertIn("--help", self.qv(*command.split(), "--no-such-option", status=2))
                if command not in TAKES_NOTHING:
                    self.assertIn("required", self.qv(*command.split(), status=2))
                if command not in TAKES_ANY_NUMBER:
                    self.qv(*command.split(), *"1 2 3 4 5 6".split(), status=2)
        for wrong in ((), ("no-such-command",), ("text",), ("xml",), ("--no-such-option",)):
            self.assertIn("--help", self.qv(*wrong, status=2))

    def test_output_to_full_disk(self):
        (self.folder / "a").write_text("a")
        self.assertEqual(self.qv("pack", ".", "a.cab"), "")  # its progress is for terminals
        for command in ("--help", "--version", "find .", "crc a", "list a.cab", "text plain"):
            with self.subTest(command), open("/dev/full", "w") as full:
                ok = 0 if command == "text plain" else 1  # nothing to write
                self.qv(*command.split(), stdout=full, stderr=subprocess.PIPE, status=ok)
        with open("/dev/full", "w") as full:
            listener = subprocess.Popen(self.command("listen", self.folder.name), stdout=full, stderr=subprocess.PIPE)
            while subprocess.run(self.command("send", self.folder.name, "text"), capture_output=True).returncode:
                self.assertIsNone(listener.poll())
            self.assertIn(b"standard output", listener.communicate(timeout=60)[1])
            self.assertEqual(listener.returncode, 1)

    def test_manual_page(self):
        page = self.tree.prefix / "share/man/man1/qv.1"
        self.assertEqual(run("groff", "-man", "-ww", "-Tutf8", "-z", page), "")
        text = page.read_text()
        for command in set(MISSING) | OTHERS:
            self.assertIn(".SS qv " + command.replace("-", "\\-") + "\n", text)

    def test_completion_in_fish(self):
        script = self.tree.prefix / "share/fish/vendor_completions.d/qv.fish"
        for line, answer in {"qv pa": "pack", "qv find . --folders ": "none only too", "qv xml ": "create get set",
                             "qv text un": "unescape", "qv lock a -- -": ""}.items():
            lines = run("fish", "--no-config", "-c", f"source {script}; complete -C '{line}'").splitlines()
            self.assertEqual(" ".join(each.split("\t")[0] for each in lines), answer, line)

    def test_completion_in_zsh(self):
        for line, answer in {"qv pa": "qv pack ", "qv find . --fol": "qv find . --folders ", "qv text un": "qv text unescape ",
                             "qv find . --folders on": "qv find . --folders only "}.items():
            self.assertEqual(complete_in_zsh(self.tree.prefix / "share/zsh/site-functions", line), answer)

    def test_completion(self):
        script = self.tree.prefix / "share/bash-completion/completions/qv"
        for line, answer in {"qv pa": "pack", "qv find pa": "", "qv xml ": "create get set", "qv find . --fo": "--folders",
                             "qv find . --folders ": "none only too", "qv lock a -- --": "", "qv text un": "unescape",
                             "qv report --output ": "", "qv copy --": "--help --later-only --dry-run --quiet"}.items():
            words = line.split(" ")
            ask = f'. {script}; COMP_WORDS=("$@"); COMP_CWORD={len(words) - 1}; _qv; echo "${{COMPREPLY[*]}}"'
            self.assertEqual(run("bash", "-euc", ask, "qv", *words).strip(), answer, line)


def complete_in_zsh(functions, line):
    """The line as zsh completes it at the tab key, in a terminal."""
    with tempfile.TemporaryDirectory() as folder:
        answer = os.path.join(folder, "answer")
        os.mkfifo(answer)
        with open(os.path.join(folder, ".zshrc"), "w", encoding="utf-8") as settings:
            settings.write(f"fpath=({functions} $fpath); autoload -U compinit; compinit -D -u\n"
                           f"save() {{ print -rn -- $BUFFER > {answer} }}; zle -N save; bindkey '^X' save\n")
        ours, its = pty.openpty()
        environment = {**os.environ, "TERM": "dumb", "ZDOTDIR": folder}
        with subprocess.Popen(["zsh", "-i"], stdin=its, stdout=its, stderr=its, env=environment) as shell:
            os.write(ours, line.encode() + b"\t\x18")
            with open(answer, encoding="utf-8") as line_read:
                completed = line_read.read()
            shell.kill()
        os.close(ours)
        os.close(its)
        return completed


class OnWindows(Tool, unittest.TestCase):
    preset = "windows-x64"


if __name__ == "__main__":
    unittest.main()
