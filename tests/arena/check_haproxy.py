"""Players through HAProxy to two platforms on one PostgreSQL, one of them drained meanwhile.

  check_haproxy.py ARENA HAPROXY_CFG

Checks: both platforms get players, and see HAProxy's header; after the first one has drained, players get on by the
second one; no script fails; the audit is clean. Returns 77 where HAProxy or PostgreSQL is missing.
"""
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from check_platform import PATIENCE, SKIPPED, Cluster, Failure, Platform, play, run  # noqa: E402

PLAYERS = 4
SCRIPTS = ("login", "binding", "billing", "progress", "void-data", "mail", "packs")
WORDS = [word for script in SCRIPTS for word in ("--script", script)]


def find_haproxy():
    return shutil.which("haproxy") or shutil.which("/usr/sbin/haproxy")


class Balancer:
    """HAProxy with the file of the tree; its port is a listening socket that it inherits."""

    def __init__(self, program, configuration, folder, platforms):
        self.socket = socket.socket()
        self.socket.bind(("127.0.0.1", 0))
        self.socket.listen(64)
        self.port = str(self.socket.getsockname()[1])
        environment = dict(os.environ, ARENA_BIND="fd@%d" % self.socket.fileno())
        for name, platform in platforms.items():
            environment["ARENA_" + name] = "127.0.0.1:" + platform.port
            environment["ARENA_%s_HTTP" % name] = platform.http
        self.output = open(os.path.join(folder, "haproxy.txt"), "w+")
        self.process = subprocess.Popen([program, "-db", "-f", configuration], stdout=self.output,
                                        stderr=subprocess.STDOUT, env=environment,
                                        pass_fds=[self.socket.fileno()])

    def text(self):
        self.output.seek(0)
        return self.output.read()

    def wait_for(self, words):
        end = time.monotonic() + PATIENCE
        while words not in self.text():
            if time.monotonic() > end or self.process.poll() is not None:
                raise Failure("HAProxy does not print '%s':\n%s" % (words, self.text()))
            time.sleep(0.05)

    def end(self):
        self.process.kill()
        self.process.wait()
        self.socket.close()


def play_through(arena, balancer, name):
    result = play(arena, balancer.port, name, "--players", str(PLAYERS), *WORDS)
    if result.returncode != 0:
        raise Failure("the players %s failed:\n%s" % (name, result.stdout))


class Playing:
    """Players that play while something happens."""

    def __init__(self, arena, balancer, folder, name, *words):
        self.output = open(os.path.join(folder, name + ".txt"), "w+")
        self.process = subprocess.Popen([arena, "player", "--platform", "127.0.0.1:" + balancer.port, "--name", name,
                                         "--players", str(PLAYERS), "--verbose", *words],
                                        stdout=self.output, stderr=subprocess.STDOUT)

    def text(self):
        self.output.seek(0)
        return self.output.read()

    def wait_for(self, words, count):
        end = time.monotonic() + PATIENCE
        while self.text().count(words) < count:
            if time.monotonic() > end or self.process.poll() is not None:
                self.process.kill()
                raise Failure("the players print too rarely '%s':\n%s" % (words, self.text()))
            time.sleep(0.02)

    def end(self):
        try:
            self.process.wait(PATIENCE)
        finally:
            self.process.kill()
        if self.process.returncode != 0:
            raise Failure("the players failed during the drain:\n" + self.text())


def count_logins(platform):
    """By the figures of its HTTP port."""
    figures = run(["curl", "-fsS", "http://127.0.0.1:%s/metrics" % platform.http]).stdout
    found = re.search(r'commonground_commands_sent_total{command="CCmdLoginSuccess"} (\d+)', figures)
    return int(found.group(1)) if found else 0


def check(program, arena, configuration, url, folder):
    options = ["--proxy-from", "127.0.0.1", "--http-port", "0"]
    platforms = {}
    balancer = None
    try:
        for name in ("FIRST", "SECOND"):
            platforms[name] = Platform(arena, url, folder, name, *options)
            platforms[name].http = platforms[name].wait_for(r"HTTP on 127\.0\.0\.1:(\d+)")
        balancer = Balancer(program, configuration, folder, platforms)
        # Players cannot bypass it.
        direct = play(arena, platforms["FIRST"].port, "Eve", "--script", "echo")
        if direct.returncode == 0:
            raise Failure("a player without the header of a proxy was accepted")
        play_through(arena, balancer, "Ann")
        for name, platform in platforms.items():
            if count_logins(platform) == 0:
                raise Failure("no player reached " + name)
        # Scripts that the end of the player's connection interrupts; it connects and begins again.
        first = platforms.pop("FIRST")
        playing = Playing(arena, balancer, folder, "Ben", *WORDS)
        playing.wait_for("CCmdRequestStartGame", PLAYERS)
        first.process.send_signal(signal.SIGTERM)
        playing.end()
        first.process.wait(PATIENCE)
        if first.process.returncode != 0:
            raise Failure("the drained platform returned %d:\n%s" % (first.process.returncode, first.text()))
        balancer.wait_for("Server platforms/first is DOWN")
        # The players of the drained platform.
        play_through(arena, balancer, "Ann")
    finally:
        if balancer:
            balancer.end()
        for platform in platforms.values():
            platform.end(signal.SIGTERM)
    audit = run([arena, "audit", "--db", url])
    print(audit.stdout, end="")
    if audit.returncode != 0 or " 0 findings" not in audit.stdout:
        raise Failure("the audit is not clean")


def main():
    arena, configuration = sys.argv[1:3]
    folder = tempfile.mkdtemp(prefix="arena")
    try:
        program = find_haproxy()
        cluster = Cluster(folder)
        if not program or not cluster.programs or not shutil.which("curl"):
            print("HAProxy, PostgreSQL or curl is missing")
            return SKIPPED
        url = cluster.start()
        try:
            check(program, arena, configuration, url, folder)
        finally:
            cluster.stop()
        return 0
    except Failure as failure:
        print(failure)
        return 1
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
