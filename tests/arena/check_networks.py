#!/usr/bin/env python3
"""Roles in three network namespaces, by their options alone: check_networks.py ARENA.

One has the registry, a zone and HAProxy, one a platform behind that, one a second platform, a game server and the
players. They log in through HAProxy and race; the platforms know each other, though players reach the first one with a
header only; the audit is clean. A game server without --peers is not greeted.

Returns 77 where network namespaces are not permitted, or ip, curl or HAProxy is missing.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

import stage
from stage import systems

NETWORK = "10.77.0.0/24"
PEERS = NETWORK + " 127.0.0.1"
HAPROXY = """
defaults
    mode tcp
    timeout connect 5s
    timeout client 1m
    timeout server 1m
frontend players
    bind 10.77.0.1:8000
    default_backend platforms
backend platforms
    server first 10.77.0.2:8000 send-proxy-v2
"""


class Networks:
    """Three namespaces on a bridge, which is in the first: 10.77.0.1 to 10.77.0.3."""

    def __init__(self):
        self.names = [f"arena{os.getpid()}-{number}" for number in (1, 2, 3)]
        self.made = []

    @staticmethod
    def ip(*words):
        subprocess.run(["ip", *words], check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)

    def make(self):
        for name in self.names:
            self.ip("netns", "add", name)
            self.made.append(name)
            self.ip("-n", name, "link", "set", "lo", "up")
        first = self.names[0]
        self.ip("-n", first, "link", "add", "bridge", "type", "bridge")
        for number, name in enumerate(self.names[1:], 2):
            self.ip("-n", first, "link", "add", f"to{number}", "type", "veth", "peer", "name", "net", "netns", name)
            self.ip("-n", first, "link", "set", f"to{number}", "master", "bridge", "up")
        for number, name in enumerate(self.names, 1):
            device = "bridge" if number == 1 else "net"
            self.ip("-n", name, "address", "add", f"10.77.0.{number}/24", "dev", device)
            self.ip("-n", name, "link", "set", device, "up")

    def remove(self):
        for name in self.made:
            subprocess.run(["ip", "netns", "del", name], check=False)


class Spread(stage.Stage):
    """Starts each process in the namespace with the number."""

    def __init__(self, arena, folder, networks):
        super().__init__(arena, folder)
        self.networks = networks

    def start_in(self, number, *command):
        process = systems.Process(" ".join(command), ["ip", "netns", "exec", self.networks.names[number - 1], *command])
        self.started.append(process)
        return process

    def serve_in(self, number, role, *words):
        process = self.start_in(number, self.arena, role, "--host", f"10.77.0.{number}", "--log-folder", self.folder,
                                "--registry", "10.77.0.1:7000", *words)
        process.expect(r"^listening on port \d+$")
        process.expect("Registered with the registry")
        return process


def count_logins(spread, number):
    """By the figures of the platform in this namespace."""
    figures = spread.start_in(number, "curl", "-fsS", "http://127.0.0.1:9100/metrics")
    figures.wait()
    return int(figures.expect(r'commonground_commands_sent_total{command="CCmdLoginSuccess"} (\d+)').group(1))


def play(spread, haproxy):
    registry = spread.start_in(1, spread.arena, "registry", "--host", "10.77.0.1", "--port", "7000", "--peers", NETWORK)
    registry.expect("^listening on port 7000$")
    zone = spread.serve_in(1, "zone", "--port", "7001", "--peers", PEERS)
    # Knows no zone, since none may greet it.
    lonely = spread.serve_in(3, "game", "--port", "7003", "--name", "lonely")
    lonely.expect("A greeting of a peer that may not greet")
    spread.stop(lonely)
    if any("Registered at the zone" in line for line in lonely.lines):
        raise AssertionError("a game server without --peers knows the zone")

    database = ("--db", f"sqlite://{spread.folder}/arena.db")
    options = (*database, "--port", "8000", "--peers", NETWORK, "--http-port", "9100")
    second = spread.serve_in(3, "platform", "--name", "second", *options)
    first = spread.serve_in(2, "platform", "--name", "first", "--proxy-from", "10.77.0.1", "--advertise",
                            "10.77.0.1:8000", "--greet-at", "10.77.0.2:8100", *options)
    configuration = os.path.join(spread.folder, "haproxy.cfg")
    with open(configuration, "w", encoding="utf-8") as file:
        file.write(HAPROXY)
    spread.start_in(1, haproxy, "-db", "-f", configuration)
    game = spread.serve_in(3, "game", "--port", "7002", "--peers", NETWORK)
    game.expect("Registered at the zone")

    players = ("--players", "3", "--verbose")
    # The list of the first platform has both, HAProxy for itself: players take them in turn.
    chosen = spread.start_in(3, spread.arena, "player", "--platform", "10.77.0.1:8000", "--choose-server", "--script",
                             "mail", *players)
    chosen.wait()
    counts = [count_logins(spread, number) for number in (2, 3)]
    if 0 in counts or max(counts) != 2 * min(counts):
        raise AssertionError(f"the platforms have {counts} logins of 3 players that take them in turn")
    race = spread.start_in(3, spread.arena, "player", "--platform", "10.77.0.1:8000", "--server", "zone=10.77.0.1:7001",
                           "--script", "login", "--script", "mail", "--script", "race", *players)
    race.wait()
    race.expect("^players: 3 done, 0 findings$")
    stage.expect_counts(race, {"logins done": 3, "mail done": 3, "<- CCmdGS_PawnScore": 9,
                               "CCmdGZ_playerExit -> CCmdGZ_playerExitOk": 3})
    direct = spread.start_in(3, spread.arena, "player", "--platform", "10.77.0.2:8000", "--script", "echo")
    direct.wait(1)
    for process in (game, zone, first, second):
        spread.stop(process)
    audit = spread.start_in(3, spread.arena, "audit", *database)
    audit.wait()
    if not re.match("^audit: [1-9][0-9]* accounts, .* 0 findings$", audit.lines[-1]):
        raise AssertionError("\n".join(audit.lines))
    print(audit.lines[-1])


def main():
    haproxy = shutil.which("haproxy") or shutil.which("/usr/sbin/haproxy")
    if not haproxy or not shutil.which("ip") or not shutil.which("curl"):
        print("skipped: HAProxy, ip or curl is missing")
        return stage.SKIPPED
    networks = Networks()
    with tempfile.TemporaryDirectory() as folder:
        spread = Spread(sys.argv[1], folder, networks)
        try:
            try:
                networks.make()
            except subprocess.CalledProcessError as fault:
                print(f"skipped: network namespaces are not permitted: {fault.output}")
                return stage.SKIPPED
            play(spread, haproxy)
        except (AssertionError, subprocess.TimeoutExpired) as fault:
            print(fault)
            for process in spread.started:
                print(f"--- {process.name}", *process.lines, sep="\n")
            return 1
        finally:
            for process in spread.started:
                process.end()
            networks.remove()
    return 0


if __name__ == "__main__":
    sys.exit(main())
