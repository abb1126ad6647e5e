#!/usr/bin/env python3
"""Which classes of commands and pack messages travel: check_travel.py SCENARIO ARENA WIRELENS LIST [--udp].

All roles serve scripted players, and what they record is decoded. LIST has a line for each class that does not travel:
its name, and why.
"""

import collections
import json
import os
import re
import subprocess
import sys

import stage
from stage import systems


class Traffic:
    """Servers that record what they carry, and a proxy to the registry, which prints what it carries."""

    def __init__(self, play, wirelens):
        self.play = play
        self.wirelens = wirelens
        self.recordings = []
        registry = self.start("registry", play.arena, "registry", "--port", "0")
        self.registry_port = registry.expect(r"^listening on port (\d+)$").group(1)
        self.proxy = self.start("proxy", wirelens, "proxy", "0", f"127.0.0.1:{self.registry_port}")
        self.proxy_port = self.proxy.expect(r"listening on port (\d+)$").group(1)

    def start(self, name, *command):
        process = systems.Process(name, list(command))
        self.play.started.append(process)
        return process

    def run(self, *words, result=0):
        process = self.start(" ".join(words), self.play.arena, *words)
        process.wait(result)
        return process

    def server(self, role, *words):
        """A recorded server that is registered, and its address."""
        recording = os.path.join(self.play.folder, f"{len(self.recordings)}.pcapng")
        self.recordings.append(recording)
        server, address = self.play.server(role, "--registry", f"127.0.0.1:{self.registry_port}", "--record", recording,
                                           *words)
        server.expect("Registered with the registry")
        return server, address

    def read(self):
        """The decoded commands; none may be unknown, or refused by its class."""
        tables = os.path.join(self.play.folder, "numbers.json")
        with open(tables, "wb") as file:
            subprocess.run([self.play.arena, "numbers"], check=True, stdout=file)
        decoding = subprocess.run([self.wirelens, "decode", "--pack-types", tables, *self.recordings], check=False,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        lines = decoding.stdout.decode("utf-8").splitlines()
        if decoding.returncode != 0:
            raise AssertionError("\n".join([decoding.stderr.decode("utf-8"),
                                            *(line[:400] for line in lines if '"error":' in line)]))
        return [json.loads(line) for line in lines + [line for line in self.proxy.lines if line.startswith("{")]]


def play_everything(traffic):
    """Each script once, then what happens only when a connection or a server ends."""
    play = traffic.play
    address = {}
    for role, *words in (["platform", "--db", f"sqlite://{play.folder}/arena.db", "--operator", "operator"],
                         ["zone"], ["game", "--udp"], ["sport"], ["lesson"], ["device"]):
        _, address[role] = traffic.server(role, *words)
    # A second zone at the centre of the first one, and another one with its name.
    second, _ = traffic.server("zone", "--name", "second", "--centre", address["zone"])
    second.expect("The game centre lists this zone")
    namesake, _ = traffic.server("zone", "--name", "second", "--centre", address["zone"])
    namesake.expect("The game centre refuses this zone")

    servers = [word for role in ("zone", "sport", "lesson", "device")
               for word in ("--server", f"{role}={address[role]}")]
    traffic.run("player", "--players", "8", "--platform", address["platform"], "--operator", "operator", "--udp",
                *servers)
    traffic.run("player", "--players", "3", "--script", "sport", "--server", f"sport={address['sport']}",
                "--until-lost")

    # Servers that greet each other, one that the registry refuses, and a question.
    alpha = traffic.start("alpha", play.arena, "service", "--registry", traffic.proxy_port, "--type", "40", "--name",
                          "alpha")
    identifier = alpha.expect("^registered under id (.*)$").group(1)
    traffic.run("service", "--registry", traffic.proxy_port, "--type", "40", "--name", "twin", "--id", identifier,
                result=1)
    traffic.run("lookup", "--registry", traffic.proxy_port, "--type", "40")
    play.stop(second)

    # A zone that is to end sends its players away after their race.
    racers = play.play("race", address["zone"], "--players", "2", "--race-pause", "50")
    racers.expect("CCmdInGamePlayerCountRequest ")
    traffic.run("shutdown", "--registry", traffic.proxy_port)
    for process in play.started:
        if process is not traffic.proxy:
            process.child.wait(systems.PATIENCE)
    stage.expect_counts(racers, {"<- CCmdServerBusy": 2})
    traffic.proxy.end()
    traffic.proxy.reader.join(systems.PATIENCE)


def count_classes(command, seen):
    """The class of a command, of the commands that it carries, and of the message in it."""
    seen[command["class"]] += 1
    if "class" in command.get("message", {}):
        seen[command["message"]["class"]] += 1
    if "inner" in command:
        count_classes(command["inner"], seen)


def read_list(path):
    """The reasons by class."""
    reasons = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            match = re.match(r"^(\w+)\s+(\S.*\S)$", line)
            if match and match.group(1) not in reasons:
                reasons[match.group(1)] = match.group(2)
            elif line.strip() and not line.startswith("#"):
                raise AssertionError(f"{path}: not a new class and a reason: {line}")
    return reasons


def all_roles(play, arguments):
    """Each class travels, or the list says why it does not."""
    if not arguments.udp:
        raise stage.Skipped("no UDP in this build")
    traffic = Traffic(play, arguments.wirelens)
    play_everything(traffic)
    seen = collections.Counter()
    for command in traffic.read():
        count_classes(command, seen)
    catalogue = json.loads(subprocess.run([arguments.wirelens, "catalogue", "--json"], check=True,
                                          stdout=subprocess.PIPE).stdout)
    listed = read_list(arguments.list)
    faults = []
    known = set()
    for family in ("command", "message"):
        classes = {row["class"] for row in catalogue if row["family"] == family}
        known |= classes
        travelling = {name for name in classes if seen[name]}
        print(f"{family} classes: {len(travelling)} of {len(classes)} travel, {len(classes & set(listed))} are listed")
        faults += [f"{name} does not travel" for name in sorted(classes - travelling - set(listed))]
        faults += [f"{name} travels, but is listed" for name in sorted(travelling & set(listed))]
    faults += [f"{name} is listed, but there is no such class" for name in sorted(set(listed) - known)]
    if faults:
        raise AssertionError("\n".join(faults))


if __name__ == "__main__":
    sys.exit(stage.main({"all_roles": all_roles}, "wirelens", "list"))
