"""Firefox, driven over Marionette: messages in JSON, each with its length in front, through a socket on loopback."""

import contextlib
import json
import pathlib
import socket

from browser import SECONDS, Browser

# Nothing outside of this machine is reached: names are not looked up, the proxy's port is closed, and loopback takes no
# proxy.
PREFERENCES = {"marionette.port": 0, "network.dns.disabled": True, "network.proxy.type": 1,
               "network.proxy.http": "127.0.0.1", "network.proxy.http_port": 9,
               "network.proxy.ssl": "127.0.0.1", "network.proxy.ssl_port": 9,
               "browser.aboutwelcome.enabled": False, "browser.chrome.site_icons": False,
               "datareporting.policy.dataSubmissionEnabled": False}
# The browser's own code makes errors as well.
PAGE = "const PAGE = /^(https?|file|data|blob|javascript|about):/;"
EXCEPTIONS = PAGE + """
    const errors = Services.console.getMessageArray().filter(m => m instanceof Ci.nsIScriptError &&
        !(m.flags & (Ci.nsIScriptError.warningFlag | Ci.nsIScriptError.infoFlag)) &&
        PAGE.test(m.sourceName));
    Services.console.reset();
    return errors.map(m => m.sourceName + ":" + m.lineNumber + " " + m.errorMessage);"""
CONSOLE = PAGE + """
    const console = Components.classes["@mozilla.org/consoleAPI-storage;1"].getService(
        Components.interfaces.nsIConsoleAPIStorage);
    const errors = console.getEvents().filter(e => e.level == "error" && PAGE.test(e.filename));
    console.clearEvents();
    return errors.map(e => e.filename + ":" + e.lineNumber + " " + e.arguments.join(" "));"""


class Firefox(Browser):
    programs = ("firefox-esr",)

    def start(self):
        lines = ["user_pref(%s, %s);" % (json.dumps(name), json.dumps(value)) for name, value in PREFERENCES.items()]
        pathlib.Path(self.profile, "user.js").write_text("\n".join(lines))
        # Only with the access to its own code can the scheme, the size and the errors of a page be had.
        port = self.launch(["firefox-esr", "--headless", "--marionette", "--remote-allow-system-access", "--no-remote",
                            "--profile", self.profile, "--width", "900", "--height", "700", "about:blank"],
                           rb"Marionette\tINFO\tListening on port (\d+)")
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=2 * SECONDS)
        self.stream, self.count = self.socket.makefile("rb"), 0
        self.receive()
        self.command("NewSession")

    def stop(self):
        if hasattr(self, "socket"):
            with contextlib.suppress(OSError, AssertionError):
                self.call("Marionette:Quit", flags=["eForceQuit"])
            self.socket.close()
        super().stop()

    def receive(self):
        length = b""
        while (digit := self.stream.read(1)) != b":":
            if not digit:
                raise ConnectionError("the browser ended")
            length += digit
        return json.loads(self.stream.read(int(length)))

    def call(self, name, **parameters):
        self.count += 1
        message = json.dumps([0, self.count, name, parameters]).encode()
        self.socket.sendall(b"%d:%b" % (len(message), message))
        _, number, error, result = self.receive()
        assert number == self.count
        if error:
            raise AssertionError(error["message"])
        return result["value"] if isinstance(result, dict) and set(result) == {"value"} else result

    def command(self, name, **parameters):
        return self.call("WebDriver:" + name, **parameters)

    def tell(self, script, *arguments, name="ExecuteScript"):
        """Runs a script beside the browser's own code."""
        self.call("Marionette:SetContext", value="chrome")
        try:
            return self.command(name, script=script, args=list(arguments))
        finally:
            self.call("Marionette:SetContext", value="content")

    def forget(self):
        self.tell("Services.clearData.deleteData(Ci.nsIClearDataService.CLEAR_COOKIES_AND_SITE_DATA,"
                  " {onDataDeleted: arguments[0]})", name="ExecuteAsyncScript")

    def resize(self, width, height):
        self.tell("[gBrowser.selectedBrowser.style.width, gBrowser.selectedBrowser.style.height] = arguments",
                  "%dpx" % width, "%dpx" % height)
        self.until("innerWidth == %d && innerHeight == %d" % (width, height))

    def prefer(self, scheme):
        self.tell("gBrowser.selectedBrowser.browsingContext.prefersColorSchemeOverride = arguments[0]", scheme)

    def allow_scripts(self, is_allowed):
        self.tell("gBrowser.selectedBrowser.browsingContext.allowJavascript = arguments[0]", is_allowed)

    def errors(self):
        return self.tell(EXCEPTIONS) + self.command("ExecuteScript", script=CONSOLE, args=[], sandbox="system")
