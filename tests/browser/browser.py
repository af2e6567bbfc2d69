"""A browser driven over the WebDriver protocol (W3C), and a server on loopback that gives it pages."""

import http.server
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import threading
import unittest
import urllib.parse
import urllib.request

BIN = pathlib.Path(os.environ["QV_BIN"])
FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
         "--disable-component-update", "--disable-sync", "--window-size=900,700"]
KEYS = {"Tab": "\ue004", "Enter": "\ue007", "Escape": "\ue00c", "Space": " ", "Left": "\ue012", "Up": "\ue013",
        "Right": "\ue014", "Down": "\ue015", "Home": "\ue011", "End": "\ue010"}


class Pages(http.server.SimpleHTTPRequestHandler):
    """Files of a folder. Below "strict/" pages get the document type that ends the browser's compatible mode."""

    def do_GET(self):
        is_strict, self.path = self.path.startswith("/strict/"), self.path.removeprefix("/strict")
        path = pathlib.Path(self.translate_path(self.path))
        if path.suffix != ".html" or not path.is_file():
            return self.send_error(204) if "favicon" in self.path else super().do_GET()
        body = (b"<!DOCTYPE html>" if is_strict else b"") + path.read_bytes()
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def translate_path(self, path):
        return os.fsdecode(os.path.join(os.fsencode(self.directory), urllib.parse.unquote_to_bytes(path.lstrip("/"))))

    def log_message(self, *_):
        pass


class Server:
    def __init__(self, folder):
        self.http = http.server.ThreadingHTTPServer(("127.0.0.1", 0), lambda *a: Pages(*a, directory=str(folder)))
        self.address = "http://127.0.0.1:%d/" % self.http.server_address[1]
        threading.Thread(target=self.http.serve_forever, daemon=True).start()

    def stop(self):
        self.http.shutdown()
        self.http.server_close()


class Driver:
    """The driver's process. Each session is a browser of its own."""

    def __init__(self):
        self.process = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, text=True)
        for line in self.process.stdout:
            if started := re.search(r"started successfully on port (\d+)", line):
                self.address = "http://127.0.0.1:%s/" % started[1]
                return
        raise RuntimeError("chromedriver did not start")

    def call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.address + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=60) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise AssertionError(json.load(error)["value"]["message"]) from None

    def stop(self):
        self.process.terminate()
        self.process.communicate()


class Browser:
    def __init__(self, driver):
        self.profile = tempfile.mkdtemp()
        options = {"args": FLAGS + ["--user-data-dir=" + self.profile]}
        wanted = {"browserName": "chrome", "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}
        self.driver = driver
        self.path = "session/" + driver.call("POST", "session", {"capabilities": {"alwaysMatch": wanted}})["sessionId"]

    def stop(self):
        self.driver.call("DELETE", self.path)
        shutil.rmtree(self.profile, ignore_errors=True)

    def call(self, path, body=None):
        return self.driver.call("POST", self.path + "/" + path, body or {})

    def go(self, address):
        self.call("url", {"url": address})

    def reload(self):
        self.call("refresh")

    def run(self, script, *arguments):
        return self.call("execute/sync", {"script": script, "args": list(arguments)})

    def value(self, expression, *arguments):
        return self.run("return " + expression, *arguments)

    def until(self, expression):
        """Waits, frame by frame, until the expression holds; the driver ends a wait of half a minute."""
        self.call("execute/async", {"script": "const done = arguments[0]; (function look() { if (" + expression +
                                    ") done(); else requestAnimationFrame(look); })()", "args": []})

    def point(self, selector, number=0, click=False):
        """Moves the pointer over the middle of an element, scrolled into view, and presses it there."""
        element = self.value("(e => (e.scrollIntoView({block: 'nearest'}), e))(document.querySelectorAll("
                             "arguments[0])[arguments[1]])", selector, number)
        actions = [{"type": "pointerMove", "origin": element, "x": 0, "y": 0, "duration": 0}]
        actions += [{"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0}] if click else []
        self.call("actions", {"actions": [{"type": "pointer", "id": "mouse", "actions": actions}]})

    def point_at(self, x, y):
        move = {"type": "pointerMove", "x": x, "y": y, "duration": 0}
        self.call("actions", {"actions": [{"type": "pointer", "id": "mouse", "actions": [move]}]})

    def click(self, selector, number=0):
        self.point(selector, number, click=True)

    def press(self, *keys):
        actions = [{"type": kind, "value": KEYS[key]} for key in keys for kind in ("keyDown", "keyUp")]
        self.call("actions", {"actions": [{"type": "key", "id": "keys", "actions": actions}]})

    def focus(self, selector, number=0):
        self.run("document.querySelectorAll(arguments[0])[arguments[1]].focus()", selector, number)

    def errors(self):
        return [entry["message"] for entry in self.call("se/log", {"type": "browser"}) if entry["level"] == "SEVERE"]


@unittest.skipUnless(shutil.which("chromedriver"), "no chromedriver")
class BrowserTest(unittest.TestCase):
    """A folder of pages on a server, and a new browser for every test. A page's errors fail the test."""

    may_complain = False

    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.make_pages()
        cls.server, cls.driver = Server(cls.folder), Driver()
        cls.addClassCleanup(cls.server.stop)
        cls.addClassCleanup(cls.driver.stop)

    def setUp(self):
        self.browser = Browser(self.driver)
        self.addCleanup(self.browser.stop)

    def tearDown(self):
        if not self.may_complain:
            self.assertEqual(self.browser.errors(), [])

    def go(self, page):
        self.browser.go(self.server.address + page)
