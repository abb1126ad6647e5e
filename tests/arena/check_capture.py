#!/usr/bin/env python3
"""What one run puts on the loopback interface and into recordings: check_capture.py ARENA WIRELENS.

dumpcap captures the packets of a platform and of a zone while each records itself. Frame by frame, wirelens decode and
the dissector in tshark must show the same fields; both captures must have the same commands of each connection, with
the same fields but for masked ones.
Exits with 77 where dumpcap may not capture, or where there is no tshark with Lua.
"""
import collections
import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

import stage
from stage import systems

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "dissector"))
import check_dissector  # noqa: E402

LEAST_FRAMES, LEAST_CLASSES, LEAST_MESSAGES = 1000, 100, 500


def decode(wirelens, types, *files):
    """The commands of each connection and direction."""
    run = subprocess.run([wirelens, "decode", "--pack-types", types, *files], capture_output=True, encoding="utf-8")
    commands = collections.defaultdict(list)
    for line in map(json.loads, run.stdout.splitlines()):
        ends = line["connection"].split("-")
        commands["-".join(ends if line["direction"] == "to_server" else ends[::-1])].append(line)
    return commands


def preference(types):
    """The table of the routers as the dissector takes it; a class template has no layout."""
    rows = [row for table in map(json.loads, open(types, encoding="utf-8")) for row in table["messages"]]
    return "commonground.pack_types:" + ", ".join(
        f"{envelope} {row['number']} {row['message']}" for row in rows if "<" not in row["message"]
        for envelope in row["envelopes"])


def without_dropped(checker, name, fields, mine):
    """A message's fields, without the lists of which an object made for reading keeps nothing, on both sides."""
    shown = mine.get("m_PackData")
    if not fields and isinstance(shown, check_dissector.Leaf) and shown.raw == "00000000":
        # A message without fields: there is its size only.
        mine["m_PackData"] = {}
    for dropped in check_dissector.dropping(checker, name):
        fields.pop(dropped, None)
        if isinstance(shown, dict):
            shown.pop(dropped, None)
    return fields


def is_masked(value, recorded):
    """Whether a recording shows the value of the wire, or what masks a secret."""
    if isinstance(value, dict) and isinstance(recorded, dict):
        return list(value) == list(recorded) and all(is_masked(value[name], recorded[name]) for name in value)
    if isinstance(value, list) and isinstance(recorded, list):
        return len(value) == len(recorded) and all(map(is_masked, value, recorded))
    hidden = recorded == 0 or isinstance(recorded, str) and len(recorded) > 0 and set(recorded) <= {"*", "0"}
    return value == recorded or hidden


def is_same(line, recorded):
    kinds = ("id", "size", "class", "error", "offset")
    return [line.get(kind) for kind in kinds] == [recorded.get(kind) for kind in kinds] and \
        is_masked(line.get("fields"), recorded.get("fields"))


def finish(dump, path, port):
    """Ends the capture once it has all packets so far: those of a last connection to the port, which is refused."""
    with socket.socket() as last:
        last.bind(("127.0.0.1", 0))
        own = last.getsockname()[1]
        last.connect_ex(("127.0.0.1", int(port)))
    end = time.monotonic() + systems.PATIENCE
    while not subprocess.run(["tshark", "-r", path, "-Y", f"tcp.srcport == {own}"], capture_output=True).stdout:
        if time.monotonic() > end:
            raise AssertionError("the capture lacks the last connection")
        time.sleep(0.1)
    dump.child.send_signal(signal.SIGTERM)
    dump.wait()


def play(stand, folder):
    """Runs the servers and players; the files of the recordings, and the servers' ports."""
    files = [os.path.join(folder, name) for name in ("platform.pcapng", "zone.pcapng")]
    platform, platform_address = stand.server("platform", "--db", f"sqlite://{folder}/arena.db", "--record", files[0])
    zone, zone_address = stand.server("zone", "--record", files[1])
    ports = [address.rsplit(":", 1)[1] for address in (platform_address, zone_address)]
    dump = systems.Process("dumpcap", ["dumpcap", "-i", "lo", "-f", " or ".join(f"tcp port {port}" for port in ports),
                                       "-w", os.path.join(folder, "lo.pcapng")])
    stand.started.append(dump)
    try:
        dump.expect("^File: ")
    except AssertionError:
        raise stage.Skipped("dumpcap may not capture on lo") from None
    stand.server("game", "--zone", zone_address)[0].expect("Registered at the zone")
    race = stand.play("race", zone_address, "--players", "2")
    race.wait()
    race.expect("^players: 2 done, 0 findings$")
    players = systems.Process("players", [stand.arena, "player", "--platform", platform_address, "--players", "2"])
    stand.started.append(players)
    players.wait()
    players.expect(" 0 findings$")
    stand.stop(zone)
    stand.stop(platform)
    finish(dump, os.path.join(folder, "lo.pcapng"), ports[0])
    dropped = dump.expect(r"received/dropped on interface .*: (\d+)/(\d+)").group(2)
    if dropped != "0":
        raise stage.Skipped(f"the system dropped {dropped} packets")
    return files, ports


def check(stand, wirelens, folder):
    types = os.path.join(folder, "types")
    with open(types, "wb") as file:
        file.write(subprocess.run([stand.arena, "numbers"], check=True, capture_output=True).stdout)
    files, ports = play(stand, folder)
    checker = check_dissector.Checker(wirelens, folder)
    checker.path, checker.tcp_ports = os.path.join(folder, "lo.pcapng"), ",".join(ports)
    captured, recorded = decode(wirelens, types, checker.path), decode(wirelens, types, *files)
    shown = checker.dissected(preference(types))

    frames, classes, messages = 0, set(), 0
    for connection in sorted(set(captured) | set(recorded) | set(shown)):
        theirs, mine = captured.get(connection, []), shown.get(connection, [])
        if len(theirs) != len(mine):
            checker.fail(connection, "has", len(theirs), "frames, and the dissector shows", len(mine))
        for place, (line, frame) in enumerate(zip(theirs, mine)):
            opened = line.get("message", {})
            if "class" in opened:
                messages += 1
                line = {**line, "fields": {**line["fields"], "m_PackData": without_dropped(
                    checker, opened["class"], opened["fields"], frame.fields)}}
            check_dissector.compare(checker, f"{connection} frame {place}", line, frame)
            frames += 1
            classes.add(line["class"])
        kept = recorded.get(connection, [])
        if len(kept) != len(theirs):
            checker.fail(connection, "has", len(theirs), "commands, and the recording", len(kept))
        for place, (line, other) in enumerate(zip(theirs, kept)):
            if not is_same(line, other):
                checker.fail(connection, "command", place, "is", line, "and in the recording", other)
    if frames < LEAST_FRAMES or len(classes) < LEAST_CLASSES or messages < LEAST_MESSAGES:
        checker.fail("only", frames, "frames of", len(classes), "classes with", messages, "messages")
    print(f"{frames} frames of {len(classes)} classes, {messages} messages, {len(checker.faults)} faults")
    if checker.faults:
        raise AssertionError("\n".join(checker.faults[:20]))


def main():
    if len(sys.argv) != 3:
        print(__doc__)
        return 2
    version = subprocess.run(["tshark", "--version"], capture_output=True,
                             encoding="utf-8").stdout if shutil.which("tshark") else ""
    if not re.search(r"with\s+Lua", version) or not shutil.which("dumpcap"):
        print("skipped: no tshark with Lua, or no dumpcap")
        return stage.SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        stand = stage.Stage(sys.argv[1], folder)
        try:
            check(stand, sys.argv[2], folder)
        except stage.Skipped as reason:
            print(f"skipped: {reason}")
            return stage.SKIPPED
        except AssertionError as fault:
            print(fault)
            return 1
        finally:
            for process in stand.started:
                process.end()
    return 0


if __name__ == "__main__":
    sys.exit(main())
