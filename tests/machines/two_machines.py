"""Two machines that mount one network file system: network namespaces of this one, and a GlusterFS volume between them."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time

# Options of the volume, "name=value" each: those that docs/sharing.md recommends, unless others are asked for.
OPTIONS = os.environ.get("QV_VOLUME_OPTIONS", "performance.open-behind=off").split()
SERVER = "10.77.0.1"
VOLUME = "qvmachines"


def run(*command, check=True):
    return subprocess.run(command, check=check, capture_output=True, text=True, timeout=120)


class TwoMachines:
    """Raises OSError or CalledProcessError where this machine cannot make them."""

    def __init__(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="qvmachines"))
        self.undo = [("rm", "-rf", str(self.root))]
        try:
            self._build()
        except BaseException:
            self.close()
            raise

    def _build(self):
        self._do(("ip", "addr", "add", SERVER + "/32", "dev", "lo"), ("ip", "addr", "del", SERVER + "/32", "dev", "lo"))
        for number in (1, 2):
            self._connect(f"qvm{number}", f"qvh{number}", f"qvc{number}", f"10.77.{number}.")
        self._serve()
        for number in (1, 2):
            folder = self.root / str(number)
            folder.mkdir()
            self.undo.append(("umount", "-l", str(folder)))
            self.mount(number)

    def _connect(self, machine, here, there, network):
        self._do(("ip", "netns", "add", machine), ("ip", "netns", "del", machine))
        run("ip", "link", "add", here, "type", "veth", "peer", "name", there)
        run("ip", "link", "set", there, "netns", machine)
        run("ip", "addr", "add", network + "1/24", "dev", here)
        run("ip", "link", "set", here, "up")
        run("ip", "-n", machine, "addr", "add", network + "2/24", "dev", there)
        for device in (there, "lo"):
            run("ip", "-n", machine, "link", "set", device, "up")
        run("ip", "-n", machine, "route", "add", "default", "via", network + "1")

    def _serve(self):
        if run("pgrep", "-x", "glusterd", check=False).returncode:
            self._do(("glusterd",), ("pkill", "-x", "glusterd"))
        brick = self.root / "brick"
        brick.mkdir()
        create = ("gluster", "--mode=script", "volume", "create", VOLUME, f"{SERVER}:{brick}", "force")
        self._retry(create)
        self.undo.append(("gluster", "--mode=script", "volume", "delete", VOLUME))
        for option in OPTIONS:
            run("gluster", "--mode=script", "volume", "set", VOLUME, *option.split("=", 1))
        self._do(("gluster", "--mode=script", "volume", "start", VOLUME),
                 ("gluster", "--mode=script", "volume", "stop", VOLUME, "force"))

    @staticmethod
    def _retry(command):
        """The server takes a moment before it answers."""
        for _ in range(50):
            if not run(*command, check=False).returncode:
                return
            time.sleep(0.2)
        run(*command)

    def _do(self, command, undo):
        run(*command)
        self.undo.append(undo)

    def mount(self, number):
        """Mounts the volume, again when its client is gone."""
        folder = str(self.root / str(number))
        run("umount", "-l", folder, check=False)
        run(*self.on(number), "mount", "-t", "glusterfs", f"{SERVER}:/{VOLUME}", folder)

    def kill_client(self, number):
        """Ends the client of a machine without a message to the server, as a crash does."""
        run("pkill", "-KILL", "-f", f"glusterfs .*{self.root}/{number}$")

    @staticmethod
    def connect(number, is_connected):
        """Connects the machine to its network, or cuts it off."""
        run("ip", "link", "set", f"qvh{number}", "up" if is_connected else "down")

    def on(self, number):
        """The words before a command that runs on one of the machines."""
        return ("nsenter", f"--net=/run/netns/qvm{number}")

    def path(self, number, name):
        """A file of the volume as a machine sees it."""
        return str(self.root / str(number) / name)

    def close(self):
        for command in reversed(self.undo):
            run(*command, check=False)


def reason_against():
    """Why there can be no two machines here; empty where there can."""
    if os.geteuid():
        return "only root can make network namespaces"
    missing = [name for name in ("ip", "nsenter", "glusterd", "gluster", "mount.glusterfs") if not shutil.which(name)]
    return "missing: " + ", ".join(missing) if missing else ""
