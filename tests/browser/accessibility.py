"""Whether a page is accessible: what the rules of axe-core find in it."""

import base64
import functools
import hashlib
import os
import pathlib
import shutil
import subprocess
import tarfile
import tempfile
import unittest

PACKAGE = "axe-core@4.14.1"
SHA512 = "FHfa+lmNjQZfJz1q8wKqIDwC6DExcHt/pkjNQb09a3NPjCKg2rhu5qb2S4r76ASyFNNtuFooJpZe37OgudVGtQ=="
RUN = """const done = arguments[0];
    axe.run(document, {resultTypes: ["violations"]}).then(
        found => done(Object.fromEntries(found.violations.filter(rule => /serious|critical/.test(rule.impact)).map(
            rule => [rule.id, rule.nodes.map(node => node.html)]))),
        error => done({failed: String(error)}));"""


def violations(browser):
    """The serious and critical ones in what the window shows: the elements' markup by the rule that they break."""
    if not browser.value("'axe' in window"):
        browser.run(script())
    return browser.wait(RUN)


def script():
    """The script of axe-core. SkipTest where it cannot be had, after one attempt."""
    source, reason = load()
    if reason:
        raise unittest.SkipTest(reason)
    return source


@functools.cache
def load():
    file = pathlib.Path(os.environ["QV_BIN"]).parents[1] / (PACKAGE + ".tgz")
    if not is_pinned(file) and (reason := fetch(file)):
        return None, reason
    with tarfile.open(file) as package:
        return package.extractfile("package/axe.min.js").read().decode(), None


def is_pinned(file):
    return file.exists() and base64.b64encode(hashlib.sha512(file.read_bytes()).digest()).decode() == SHA512


def fetch(file):
    """The reason why it cannot be had, or None."""
    if not shutil.which("npm"):
        return "no npm to fetch " + PACKAGE
    # Another process may fetch it as well: what has its name is whole.
    with tempfile.TemporaryDirectory(dir=file.parent) as folder:
        command = ["npm", "pack", "--silent", "--fetch-retries=1", "--pack-destination", folder, PACKAGE]
        if subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True).returncode:
            return PACKAGE + " cannot be fetched"
        fetched = next(pathlib.Path(folder).glob("*.tgz"))
        if not is_pinned(fetched):
            raise AssertionError("%s is another one than was chosen" % PACKAGE)
        os.replace(fetched, file)
