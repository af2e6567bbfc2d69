"""Installed trees of the library, made from the build folders and then moved, so that no path leads back to the first
place; and the examples, built against them from outside."""

import os
import pathlib
import re
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
VERSION = re.search(r"project\(QvCommon VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())[1]
INTERFACE = VERSION.rpartition(".")[0]  # what programs are linked against until 1.0
WARNINGS = "-Wall -Wextra -Wpedantic -Wshadow -Werror"


def run(*command, status=0, **options):
    """What a program writes to both streams, unless options redirect them. It must end with the status; None allows any."""
    options = {"stdout": subprocess.PIPE, "stderr": subprocess.STDOUT, "text": True, "timeout": 60, **options}
    done = subprocess.run([str(word) for word in command], **options)
    if status is not None and done.returncode != status:
        raise AssertionError(f"{command}: status {done.returncode}, not {status}\n{done.stdout}")
    return done.stdout


def launcher():
    return ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []


class Tree:
    """The build folder of a preset, what it installs, and how its programs are run."""

    def __init__(self, preset):
        self.windows = preset.startswith("windows")
        self.build = ROOT / "build" / preset
        self.prefix = self.build / "installed"
        self.work = self.build / "install-work"
        self.runner = [ROOT / "scripts/lib" / preset.replace("windows", "wine")] if self.windows else []
        self.suffix = ".exe" if self.windows else ""

    def install(self):
        first = self.build / "install-first"
        for folder in (first, self.prefix, self.work):
            shutil.rmtree(folder, ignore_errors=True)
        self.work.mkdir()
        run("cmake", "--install", self.build, "--prefix", first)
        first.rename(self.prefix)
        return self

    def where(self):
        """Arguments that lead CMake to the library. The cross compiler searches only its own folders."""
        if not self.windows:
            return [f"-DCMAKE_PREFIX_PATH={self.prefix}"]
        return [f"-DQvCommon_DIR={self.prefix}/lib/cmake/QvCommon",
                f"--toolchain={ROOT}/cmake/toolchains/{self.build.name}.cmake"]

    def build_with_cmake(self):
        """The folder with the programs. On Windows they are beside the library, as when shipped."""
        folder = self.work / "cmake"
        run("cmake", "-S", EXAMPLES, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", *self.where(), *launcher(),
            f"-DCMAKE_CXX_FLAGS={WARNINGS}")
        run("cmake", "--build", folder)
        if not self.windows:
            return folder
        for program in folder.glob("*.exe"):
            shutil.copy(program, self.prefix / "bin")
        shutil.copytree(folder / "plugins", self.prefix / "bin/plugins")
        return self.prefix / "bin"

    def build_with_pkg_config(self, compiler="g++", names="*"):
        folder = self.work / "pkg-config"
        folder.mkdir()
        flags = run("pkg-config", "--cflags", "--libs", "qvcommon", env=self.pkg_config_environment()).split()
        cache = ["ccache"] if shutil.which("ccache") else []
        for source in EXAMPLES.glob(names + ".cpp"):
            part = folder / (source.stem + ".o")
            run(*cache, compiler, "-std=c++20", *WARNINGS.split(), *flags, "-c", source, "-o", part)
            run(compiler, part, *flags, f"-Wl,-rpath,{self.prefix}/lib", "-o", folder / (source.stem + self.suffix))
        return folder

    def pkg_config_environment(self):
        return {**os.environ, "PKG_CONFIG_PATH": str(self.prefix / "lib/pkgconfig")}
