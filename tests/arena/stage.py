"""Processes of the miniature platform for a test, and the transcript of its players."""

import argparse
import collections
import os
import re
import signal
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "interop"))
import systems  # noqa: E402

SKIPPED = 77


class Skipped(Exception):
    """The build lacks what the scenario needs; the text says what."""


class Stage:
    """Starts processes of one build and ends them all."""

    def __init__(self, arena, folder):
        self.arena = arena
        self.folder = folder
        self.started = []

    def start(self, *words):
        process = systems.Process(" ".join(words), [self.arena, *words, "--log-folder", self.folder])
        self.started.append(process)
        return process

    def server(self, role, *words):
        """A server, and its address."""
        process = self.start(role, "--port", "0", *words)
        port = process.expect(r"^listening on port (\d+)$").group(1)
        return process, f"127.0.0.1:{port}"

    def play(self, script, address, *words):
        """Players Ann-1, Ann-2 ... (Ann, if it is one) of a single server."""
        server = "zone" if script == "race" else script
        words = ("player", "--script", script, "--server", f"{server}={address}", "--verbose", *words)
        process = systems.Process(" ".join(words), [self.arena, *words])
        self.started.append(process)
        return process

    def stop(self, process):
        """Ends a server by its service manager's signal; it must end well."""
        process.child.send_signal(signal.SIGTERM)
        process.wait()


def transcript(process):
    """How often each line came, without the player's name."""
    lines = (re.match(r"^[^ ]+: (.*)$", line) for line in process.lines)
    return collections.Counter(match.group(1) for match in lines if match)


def expect_counts(process, expected):
    """Each of these lines as often as it says; lists those that differ."""
    kinds = transcript(process)
    wrong = [f"{count} times '{kind}' expected, {kinds[kind]} there" for kind, count in expected.items()
             if kinds[kind] != count]
    if wrong:
        raise AssertionError("\n".join(wrong))


def main(scenarios, *more):
    """Plays the scenario that the command line names; more are the names of further arguments."""
    parser = argparse.ArgumentParser()
    parser.add_argument("scenario", choices=sorted(scenarios))
    parser.add_argument("arena", help="the program")
    for name in more:
        parser.add_argument(name)
    parser.add_argument("--udp", action="store_true", help="this build has UDP")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        stage = Stage(arguments.arena, folder)
        try:
            probe = systems.Process("player", [arguments.arena, "player", "--help"])
            stage.started.append(probe)
            probe.child.wait(systems.PATIENCE)
            probe.reader.join(systems.PATIENCE)
            if any(re.search("no coroutines|no role", line) for line in probe.lines):
                print("skipped: the players are coroutines")
                return SKIPPED
            scenarios[arguments.scenario](stage, arguments)
        except Skipped as reason:
            print(f"skipped: {reason}")
            return SKIPPED
        except (AssertionError, subprocess.TimeoutExpired) as fault:
            print(fault)
            for process in stage.started:
                print(f"--- {process.name}", *process.lines, sep="\n")
            return 1
        finally:
            for process in stage.started:
                process.end()
    print(f"{arguments.scenario}: {len(stage.started)} processes, all done")
    return 0
