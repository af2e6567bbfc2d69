"""Chromium, driven through the HTTP interface of its driver."""

import contextlib
import json
import urllib.error
import urllib.request

from browser import SECONDS, Browser

# Nothing outside of this machine is reached: the proxy's port is closed, and loopback takes no proxy.
FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
         "--disable-component-update", "--disable-sync", "--proxy-server=127.0.0.1:9", "--window-size=900,700"]
COMMANDS = {"SetTimeouts": "POST timeouts", "Navigate": "POST url", "Refresh": "POST refresh",
            "ExecuteScript": "POST execute/sync", "ExecuteAsyncScript": "POST execute/async",
            "PerformActions": "POST actions", "GetCookies": "GET cookie", "Print": "POST print",
            "NewWindow": "POST window/new", "CloseWindow": "DELETE window", "SwitchToWindow": "POST window"}


class Chromium(Browser):
    programs = ("chromium", "chromedriver")

    def start(self):
        port = self.launch(["chromedriver", "--port=0"], rb"started successfully on port (\d+)")
        self.address = "http://127.0.0.1:%d/session" % port
        options = {"args": FLAGS + ["--user-data-dir=" + self.profile]}
        wanted = {"browserName": "chrome", "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}
        self.address += "/" + self.call("POST", "", {"capabilities": {"alwaysMatch": wanted}})["sessionId"]

    def stop(self):
        # The driver's end is not the browser's.
        if hasattr(self, "address"):
            with contextlib.suppress(OSError, AssertionError):
                self.call("DELETE", "")
        super().stop()

    def call(self, method, path, body=None):
        data = json.dumps(body or {}).encode() if method == "POST" else None
        request = urllib.request.Request(self.address + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=2 * SECONDS) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise AssertionError(json.load(error)["value"]["message"]) from None

    def command(self, name, **parameters):
        method, path = COMMANDS[name].split()
        return self.call(method, "/" + path, parameters)

    def tell(self, command, **parameters):
        """A command of the browser's own protocol."""
        return self.call("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def forget(self):
        self.tell("Network.clearBrowserCookies")
        self.tell("Storage.clearDataForOrigin", origin="*", storageTypes="all")

    def resize(self, width, height):
        self.tell("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def prefer(self, scheme):
        self.tell("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def allow_scripts(self, is_allowed):
        self.tell("Emulation.setScriptExecutionDisabled", value=not is_allowed)

    def errors(self):
        log = self.call("POST", "/se/log", {"type": "browser"})
        return [entry["message"] for entry in log if entry["level"] == "SEVERE"]
