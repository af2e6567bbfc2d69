"""A browser that tests drive: one interface for all browsers."""

import base64
import contextlib
import os
import re
import shutil
import subprocess
import tempfile
import threading
import time

KEYS = {"Tab": "\ue004", "Enter": "\ue007", "Shift": "\ue008", "Control": "\ue009", "Alt": "\ue00a", "Escape": "\ue00c",
        "Space": " ", "End": "\ue010", "Home": "\ue011", "Left": "\ue012", "Up": "\ue013", "Right": "\ue014",
        "Down": "\ue015"}
UNTIL = """const done = arguments[0];
    (function look() {
        let holds = false;
        try {
            holds = document.readyState == "complete" && (%s);
        } catch {
            // What it looks for is not there yet.
        }
        if (holds) done();
        else requestAnimationFrame(look);
    })();"""
SECONDS = 120  # for what takes a moment, unless the machine is busy with other things


class Browser:
    """A browser with a fresh profile and one window. This class has what the commands of WebDriver (W3C) do in every
    browser; derived ones send them, and do what WebDriver has no command for."""

    programs = ()

    @classmethod
    def missing(cls):
        """The programs that this browser needs and the machine lacks."""
        return [program for program in cls.programs if not shutil.which(program)]

    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="qv-browser-")
        try:
            self.start()
            self.command("SetTimeouts", script=1000 * SECONDS, pageLoad=1000 * SECONDS)
        except BaseException:
            self.stop()
            raise

    def stop(self):
        if process := getattr(self, "process", None):
            process.terminate()
            process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)

    def launch(self, command, ready):
        """Starts the process and returns the port that it prints; the expression's group finds it."""
        environment = os.environ | {"HOME": self.profile, "TMPDIR": self.profile}
        # However these tests end, the process ends with them.
        command = ["setpriv", "--pdeathsig", "TERM"] + command
        self.process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=environment)
        for line in self.process.stdout:
            if match := re.search(ready, line):
                # A full pipe would block the process.
                threading.Thread(target=self.process.stdout.read, daemon=True).start()
                return int(match[1])
        raise RuntimeError(" ".join(command) + " did not start")

    def renew(self):
        """Replaces the window by a fresh one: no history, cookies, storage, emulation or errors from before."""
        window = self.command("NewWindow", type="tab")["handle"]
        self.command("CloseWindow")
        self.command("SwitchToWindow", handle=window)
        self.forget()  # not before, since pages keep something when they are left
        self.errors()

    def go(self, address):
        self.command("Navigate", url=address)

    def reload(self):
        self.command("Refresh")

    def run(self, script, *arguments):
        return self.command("ExecuteScript", script=script, args=list(arguments))

    def value(self, expression, *arguments):
        return self.run("return " + expression, *arguments)

    def wait(self, script, *arguments):
        """Runs a script that ends when it calls its last argument, and returns what that is called with."""
        return self.command("ExecuteAsyncScript", script=script, args=list(arguments))

    def until(self, expression):
        """Waits, frame by frame, until the page is loaded and the expression holds. The page may change meanwhile: what
        waits in the old one is given up after a second."""
        end = time.monotonic() + SECONDS
        self.command("SetTimeouts", script=1000)
        try:
            while time.monotonic() < end:
                with contextlib.suppress(AssertionError):
                    return self.wait(UNTIL % expression)
        finally:
            self.command("SetTimeouts", script=1000 * SECONDS)
        raise AssertionError("this never came to hold: " + expression)

    def frames(self):
        """Waits until the page has shown what has been done so far."""
        self.wait("requestAnimationFrame(() => requestAnimationFrame(arguments[0]))")

    def point(self, selector, number=0, click=False):
        """Moves the pointer over the middle of an element, scrolled into view, and presses it there."""
        element = self.value("(e => (e.scrollIntoView({block: 'nearest'}), e))(document.querySelectorAll("
                             "arguments[0])[arguments[1]])", selector, number)
        actions = [{"type": "pointerMove", "origin": element, "x": 0, "y": 0, "duration": 0}]
        actions += [{"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0}] if click else []
        self.act("pointer", actions)

    def point_at(self, x, y):
        self.act("pointer", [{"type": "pointerMove", "x": x, "y": y, "duration": 0}])

    def click(self, selector, number=0):
        self.point(selector, number, click=True)

    def press(self, *keys):
        """Names of keys, characters, or several at once, as Shift+Tab."""
        actions = []
        for chord in keys:
            codes = [KEYS.get(key, key) for key in (chord.split("+") if len(chord) > 1 else chord)]
            actions += [{"type": "keyDown", "value": code} for code in codes]
            actions += [{"type": "keyUp", "value": code} for code in reversed(codes)]
        self.act("key", actions)

    def act(self, device, actions):
        self.command("PerformActions", actions=[{"type": device, "id": device, "actions": actions}])

    def focus(self, selector, number=0):
        self.run("document.querySelectorAll(arguments[0])[arguments[1]].focus()", selector, number)

    def cookies(self):
        """Those of the page, by their names."""
        return {cookie["name"]: cookie["value"] for cookie in self.command("GetCookies")}

    def pdf(self):
        """The page as it is printed: the bytes of a file."""
        return base64.b64decode(self.command("Print"))

    def command(self, name, **parameters):
        """A command of WebDriver. A failure is an AssertionError with the browser's message."""
        raise NotImplementedError

    def forget(self):
        """Clears cookies and storage of all pages."""
        raise NotImplementedError

    def resize(self, width, height):
        """The size of the page's view in pixels; it holds until `renew`."""
        raise NotImplementedError

    def prefer(self, scheme):
        """"dark" or "light" is what pages find as the reader's choice; it holds until `renew`."""
        raise NotImplementedError

    def allow_scripts(self, is_allowed):
        """Whether pages opened from now on run their scripts; it holds until `renew`. `run` and `value` always work."""
        raise NotImplementedError

    def errors(self):
        """The messages of the errors since the last call: uncaught exceptions, and what the page in the window has
        written to the console as errors."""
        raise NotImplementedError
