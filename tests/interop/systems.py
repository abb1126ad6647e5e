"""The programs of two builds on one machine: this system's, and those of another system under an emulator."""

import argparse
import os
import re
import subprocess
import sys
import threading

SKIPPED = 77
# The time limit for a process, in seconds; normally far less is needed.
PATIENCE = 120


class Systems:
    """Which program is started how, and the width of its characters."""

    def __init__(self, arguments):
        self.foreign, foreign_folder = arguments.foreign or ("windows", None)
        self.folders = {"linux": arguments.native, self.foreign: foreign_folder}
        self.emulator = arguments.emulator

    def command(self, system, program, *words):
        folder = self.folders[system]
        path = os.path.join(folder or "", program + (".exe" if system == "windows" else ""))
        if not folder or not os.path.exists(path):
            print(f"skipped: no {program} for {system} in {folder}; build the other preset first")
            sys.exit(SKIPPED)
        return (self.emulator if system == self.foreign else []) + [path, *words]

    @staticmethod
    def width(system):
        return "16" if system == "windows" else "32"

    def path(self, system, path):
        return "Z:" + path if system == "windows" else path


def parse(description, *positional):
    parser = argparse.ArgumentParser(description=description)
    for name in positional:
        parser.add_argument(name)
    parser.add_argument("--native", help="build folder of this system's programs")
    parser.add_argument("--foreign", nargs=2, metavar=("SYSTEM", "FOLDER"),
                        help="the other system, such as windows or armhf, and the build folder of its programs")
    # The command that runs a program of the other system follows "--".
    words = sys.argv[1:]
    end = words.index("--") if "--" in words else len(words)
    arguments = parser.parse_args(words[:end])
    arguments.emulator = words[end + 1:]
    return arguments, Systems(arguments)


class Process:
    """A started program, its lines, and its end."""

    def __init__(self, name, command):
        self.name = name
        self.lines = []
        self.change = threading.Condition()
        self.ended = False
        self.child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                      stderr=subprocess.STDOUT)
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()

    def read(self):
        for line in self.child.stdout:
            with self.change:
                self.lines.append(line.decode("utf-8", "replace").rstrip("\r\n"))
                self.change.notify_all()
        with self.change:
            self.ended = True
            self.change.notify_all()

    def expect(self, pattern):
        """The match of the first line that fits; fails where the program ends or is silent."""
        def found():
            return next((m for m in (re.search(pattern, line) for line in self.lines) if m), None)
        with self.change:
            self.change.wait_for(lambda: found() or self.ended, PATIENCE)
            match = found()
        if not match:
            raise AssertionError(f"{self.name} does not say {pattern}:\n" + "\n".join(self.lines))
        return match

    def wait(self, result=0):
        got = self.child.wait(PATIENCE)
        self.reader.join(PATIENCE)
        if got != result:
            raise AssertionError(f"{self.name} returned {got}:\n" + "\n".join(self.lines))

    def end(self):
        if self.child.poll() is None:
            self.child.kill()
            self.child.wait()
