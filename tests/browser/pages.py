"""A server on loopback that gives browsers the pages of a folder."""

import http.server
import os
import pathlib
import re
import threading
import urllib.parse

# Each call of `harm` is noted before it returns: none is missed when the page is left or opened again.
SENTINEL = (b"<script>function harm() { var call = new XMLHttpRequest; call.open('GET', '/harmed', false);"
            b" call.send(); }</script>")


class Pages(http.server.SimpleHTTPRequestHandler):
    """Files of a folder. Below "strict/" pages get the document type that ends the browser's compatible mode, below
    "watched/" a function `harm` whose calls the server records."""

    def do_GET(self):
        if self.path == "/harmed":
            self.server.harm.append(self.headers.get("Referer"))
            return self.send_error(204)
        mode, self.path = re.fullmatch("(/strict(?=/)|/watched(?=/)|)(.*)", self.path).groups()
        path = pathlib.Path(self.translate_path(self.path))
        if path.suffix != ".html" or not path.is_file():
            return self.send_error(204) if "favicon" in self.path else super().do_GET()
        body = path.read_bytes()
        if mode == "/strict":
            body = b"<!DOCTYPE html>" + body
        elif mode:
            start = re.match(rb"(?:\xef\xbb\xbf)?\s*(?:<!doctype[^>]*>)?", body, re.IGNORECASE).end()
            body = body[:start] + SENTINEL + body[start:]
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
        self.http.harm = self.harm = []
        self.address = "http://127.0.0.1:%d/" % self.http.server_address[1]
        threading.Thread(target=self.http.serve_forever, daemon=True).start()

    def stop(self):
        self.http.shutdown()
        self.http.server_close()
