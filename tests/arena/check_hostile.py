#!/usr/bin/env python3
"""Players of a platform beside hostile connections: check_hostile.py ARENA WIRELENS [PLAYERS HOSTILE].

Over TLS: a third of the hostile connections sends random frames, a third asks for echoes and does not read them, a
third stops in the middle of its handshake; each connects again when it is ended. The players play once without them
and once beside them. Both times all of theirs is answered, the audit is clean, and the platform's memory stays
bounded. Prints the 99th percentiles of the round trips.
"""
import os
import random
import re
import socket
import ssl
import struct
import subprocess
import sys
import tempfile
import threading
import time

import stage
from check_run import make_certificates
from stage import systems

PLAYERS, HOSTILE = 20, 60
SCRIPTS = ["--script", "mail"] + ["--script", "echo", "--script", "progress"] * 3
# Of the platform, for each hostile connection: its TLS session and its buffers, as the limits for strangers have them.
MOST_MEMORY = 256 * 1024
PAUSE = 0.02


class Hostile(threading.Thread):
    """One connection after the other, from an address of its own."""

    def __init__(self, crowd, number):
        super().__init__(daemon=True)
        self.crowd = crowd
        self.random = random.Random(number)
        self.connected, self.sent = 0, 0
        self.act = (self.send_frames, self.do_not_read, self.stay_half_open)[number % 3]

    def run(self):
        while not self.crowd.over.is_set():
            try:
                with socket.create_connection(("127.0.0.1", self.crowd.port), 10, ("127.0.0.2", 0)) as plain:
                    self.connected += 1
                    self.act(plain)
            except OSError:
                pass
            self.crowd.over.wait(PAUSE)

    def send_frames(self, plain):
        with self.crowd.context.wrap_socket(plain) as secure:
            while not self.crowd.over.wait(PAUSE):
                size = self.random.choice((0, 6, 30, 300, 3000))
                secure.sendall(struct.pack("<I", size) + self.random.randbytes(size))
                self.sent += 1

    def do_not_read(self, plain):
        plain.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
        with self.crowd.context.wrap_socket(plain) as secure:
            while not self.crowd.over.wait(PAUSE):
                secure.sendall(self.crowd.echo * 100)
                self.sent += 100

    def stay_half_open(self, plain):
        sent = ssl.MemoryBIO()
        try:
            self.crowd.context.wrap_bio(ssl.MemoryBIO(), sent).do_handshake()
        except ssl.SSLWantReadError:
            pass
        hello = sent.read()
        plain.sendall(hello[:len(hello) // 2])
        self.sent += 1
        plain.settimeout(60)
        plain.recv(1)


class Crowd:
    def __init__(self, wirelens, port, count):
        self.port = port
        self.over = threading.Event()
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
        self.context.check_hostname = False
        self.context.verify_mode = ssl.CERT_NONE
        self.echo = subprocess.run([wirelens, "encode", "--packets", "--raw"], check=True, capture_output=True,
                                   input=b'{"class":"CCmdServerEcho","fields":{}}\n').stdout
        self.threads = [Hostile(self, number) for number in range(count)]

    def __enter__(self):
        for thread in self.threads:
            thread.start()
        end = time.monotonic() + systems.PATIENCE
        while not all(thread.sent for thread in self.threads):
            if time.monotonic() > end:
                raise AssertionError("not all hostile connections have sent something")
            time.sleep(PAUSE)
        return self

    def __exit__(self, *_):
        self.over.set()


def memory(process):
    with open(f"/proc/{process.child.pid}/status", encoding="ascii") as status:
        return int(re.search(r"VmHWM:\s+(\d+) kB", status.read()).group(1)) * 1024


def play(stand, port, name, players):
    """The 99th percentile of each kind, in milliseconds, and the seconds."""
    begin = time.monotonic()
    run = systems.Process(name, [stand.arena, "player", "--platform", f"127.0.0.1:{port}", "--name", name, "--tls",
                                 os.path.join(stand.folder, "authority.pem"), "--players", str(players), *SCRIPTS])
    stand.started.append(run)
    run.wait()
    run.expect(rf"^players: {players} done, 0 findings$")
    rows = (re.match(r"^(C\w+): .* p99 ([0-9.]+) ms$", line) for line in run.lines)
    return {row.group(1): float(row.group(2)) for row in rows if row}, time.monotonic() - begin


def check(stand, wirelens, players, hostile):
    make_certificates(stand.folder)
    database = f"sqlite://{stand.folder}/arena.db"
    platform, address = stand.server("platform", "--db", database, "--certificate", f"{stand.folder}/server.pem",
                                     "--key", f"{stand.folder}/server.key")
    port = int(address.rsplit(":", 1)[1])
    alone, alone_time = play(stand, port, "Ann", players)
    before = memory(platform)
    with Crowd(wirelens, port, hostile) as crowd:
        beside, beside_time = play(stand, port, "Ben", players)
    after = memory(platform)
    stand.stop(platform)
    audit = subprocess.run([stand.arena, "audit", "--db", database], capture_output=True, encoding="utf-8")
    if audit.returncode != 0 or " 0 findings" not in audit.stdout:
        raise AssertionError("the audit is not clean:\n" + audit.stdout)
    for kind in sorted(set(alone) & set(beside)):
        print(f"{kind}: p99 {alone[kind]:.2f} ms, beside them {beside[kind]:.2f} ms")
    print(f"{players} players: {alone_time:.1f} s, beside {hostile} hostile connections {beside_time:.1f} s;",
          f"memory {before >> 20} MiB, {after >> 20} MiB;",
          f"{sum(thread.connected for thread in crowd.threads)} hostile connections,",
          f"{sum(thread.sent for thread in crowd.threads)} sends")
    if after - before > hostile * MOST_MEMORY:
        raise AssertionError(f"the platform's memory grows by {after - before} bytes")


def main():
    if len(sys.argv) not in (3, 5):
        print(__doc__)
        return 2
    players, hostile = map(int, sys.argv[3:5]) if len(sys.argv) == 5 else (PLAYERS, HOSTILE)
    with tempfile.TemporaryDirectory() as folder:
        stand = stage.Stage(sys.argv[1], folder)
        try:
            check(stand, sys.argv[2], players, hostile)
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
