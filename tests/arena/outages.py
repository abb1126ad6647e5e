"""Players during outages, and services that end at any time."""
import contextlib
import errno
import os
import re
import signal
import socket
import sqlite3
import subprocess
import threading
import time

from check_haproxy import Balancer
from check_platform import PATIENCE, Cluster, Failure, Platform, run

# Seconds until players and services have got over the end of an outage, also on a busy machine.
RECOVERY = 8
DISK_SIZE = "192m"


class Skipped(Exception):
    """A program or a permission is missing; the text says which."""


class Outages:
    """The times during which requests may be refused."""

    def __init__(self):
        self.times = []

    @contextlib.contextmanager
    def during(self, words):
        begin = time.monotonic()
        self.times.append((begin, begin + 3600))
        print("fault: %s" % words, flush=True)
        try:
            yield
        finally:
            self.times[-1] = (begin, time.monotonic() + RECOVERY)

    def explain(self, moment):
        return any(begin <= moment <= end for begin, end in self.times)


class Players:
    """Players who play until the seconds are over, and what was acknowledged to them."""

    SAVED = re.compile(r": saved: (bill|letter|code) (.*)$")

    def __init__(self, command, *words):
        self.lines = []
        self.refusals = []
        self.saved = {"bill": set(), "letter": set(), "code": set()}
        self.process = subprocess.Popen([*command, "player", "--verbose", *words], stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, errors="replace")
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()

    def read(self):
        for line in self.process.stdout:
            self.lines.append(line.rstrip())
            if ": REFUSED " in line:
                self.refusals.append((time.monotonic(), line.rstrip()))
            match = self.SAVED.search(line.rstrip())
            if match:
                self.saved[match.group(1)].add(match.group(2))

    def count(self, words):
        return sum(words in line for line in list(self.lines))

    def wait_for(self, words, count):
        end = time.monotonic() + PATIENCE
        while self.count(words) < count:
            if time.monotonic() > end or self.process.poll() is not None:
                raise Failure("the players print too rarely '%s':\n%s" % (words, self.text()))
            time.sleep(0.05)

    def text(self):
        notable = [line for line in self.lines if re.search("FAILED|REFUSED|finding|no connection", line)]
        return "\n".join(notable[-200:] + ["..."] + self.lines[-40:])

    def finish(self, seconds, outages, scripts):
        try:
            self.process.wait(seconds + 2 * PATIENCE)
        except subprocess.TimeoutExpired:
            raise Failure("the players do not end:\n" + self.text()) from None
        finally:
            self.end()
        if self.process.returncode != 0:
            raise Failure("the players returned %d:\n%s" % (self.process.returncode, self.text()))
        unexplained = [line for moment, line in self.refusals if not outages.explain(moment)]
        if unexplained:
            raise Failure("refused without an outage:\n%s\n%s" % ("\n".join(unexplained), self.text()))
        lies = [line for _, line in self.refusals if re.search("CCmdLoginFail (?![38]:)", line)]
        if lies:
            raise Failure("an outage is told as something else:\n" + "\n".join(lies))
        if self.count(": CCmdAccountKickOut"):
            raise Failure("players were kicked out who had no other login")
        for name in scripts:
            if self.count(": %s done" % name) == 0:
                raise Failure("no player has played '%s' to its end" % name)

    def end(self):
        self.process.kill()
        self.process.wait()
        self.reader.join(PATIENCE)


QUERIES = {"bill": "SELECT order_number FROM bills", "letter": "SELECT subject FROM letters",
           "code": "SELECT code FROM used_codes"}


def find_lost(saved, select):
    """Compares what was acknowledged with the rows of the database."""
    for kind, statement in QUERIES.items():
        rows = select(statement)
        if not saved[kind]:
            raise Failure("no %s was acknowledged" % kind)
        if not saved[kind] <= rows:
            raise Failure("acknowledged and lost: %s %s" % (kind, " ".join(sorted(saved[kind] - rows))))
    print("acknowledged and there: " + ", ".join("%d %ss" % (len(saved[kind]), kind) for kind in QUERIES))


def select_sqlite(file):
    def select(statement):
        with contextlib.closing(sqlite3.connect(file)) as database:
            return {row[0] for row in database.execute(statement)}
    return select


class FragileCluster(Cluster):
    """A PostgreSQL server that ends at any time."""

    def number(self):
        with open(os.path.join(self.data, "postmaster.pid"), encoding="ascii") as file:
            return int(file.readline())

    def kill(self):
        os.kill(self.number(), signal.SIGKILL)

    def is_alive(self):
        return run([os.path.join(self.programs, "pg_ctl"), "-D", self.data, "status"], **self.user).returncode == 0

    def come_back(self):
        """The children of a killed server end on their own; until then no other one starts."""
        end = time.monotonic() + PATIENCE
        while True:
            try:
                self.call("pg_ctl", "-D", self.data, "-w", "-l", os.path.join(self.home, "log"), "-o", self.options,
                          "start")
                return
            except Failure:
                if time.monotonic() > end:
                    raise
                time.sleep(0.1)

    def select(self, statement):
        result = run([os.path.join(self.programs, "psql"), "-h", self.home, "-U", "arena", "-Atqc", statement,
                      "postgres"], cwd=self.home, **self.user)
        if result.returncode != 0:
            raise Failure(result.stdout)
        return set(result.stdout.splitlines())


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return str(probe.getsockname()[1])


class FragileBalancer(Balancer):
    """HAProxy on a port that refuses connections while it is killed."""

    def __init__(self, program, configuration, folder, platforms):
        self.words = (program, configuration, folder, platforms)
        self.port = free_port()
        self.start()

    def start(self):
        program, configuration, folder, platforms = self.words
        environment = dict(os.environ, ARENA_BIND="127.0.0.1:" + self.port)
        for name, platform in platforms.items():
            environment["ARENA_" + name] = "127.0.0.1:" + platform.port
            environment["ARENA_%s_HTTP" % name] = platform.http
        self.output = open(os.path.join(folder, "haproxy.txt"), "a+")
        self.process = subprocess.Popen([program, "-db", "-f", configuration], stdout=self.output,
                                        stderr=subprocess.STDOUT, env=environment)

    def end(self):
        self.process.kill()
        self.process.wait()


class FragilePlatform:
    """A platform with fixed ports, so that HAProxy finds it again."""

    def __init__(self, arena, url, folder, name):
        self.words = (arena, url, folder, name)
        self.port, self.http = free_port(), free_port()
        self.start()

    def start(self):
        self.running = Platform(*self.words, "--proxy-from", "127.0.0.1", "--port", self.port, "--http-port",
                                self.http)

    def end(self, number):
        self.running.end(number)


def end_well(platforms):
    for platform in platforms:
        if platform.process.poll() is not None:
            raise Failure("a platform has ended by itself with %d:\n%s" % (platform.process.returncode, platform.text()))
        platform.end(signal.SIGTERM)
        if platform.process.returncode != 0:
            raise Failure("a platform returned %d:\n%s" % (platform.process.returncode, platform.text()))


def play_words(scripts, options):
    return ["--players", str(options.players), "--seconds", str(options.seconds),
            *[word for script in scripts for word in ("--script", script)]]


DONE = {"login": "logins", "binding": "bindings", "void-data": "void data"}


def done_of(scripts):
    return [DONE.get(script, script) for script in scripts if script != "race"]


class Disk:
    """A small file system of this test's own, which can be full."""

    def __init__(self, folder):
        self.folder = os.path.join(folder, "disk")
        os.mkdir(self.folder)
        made = run(["mount", "-t", "tmpfs", "-o", "mode=755,size=" + DISK_SIZE, "tmpfs", self.folder])
        if made.returncode != 0:
            raise Skipped("no file system can be mounted: " + made.stdout)

    def fill(self, seconds):
        """Also takes what is freed meanwhile."""
        end = time.monotonic() + seconds
        name = os.path.join(self.folder, "filler")
        with open(name, "wb", buffering=0) as filler:
            while time.monotonic() < end:
                for size in (1 << 20, 1 << 12):
                    try:
                        while filler.write(bytes(size)) == size:
                            pass
                    except OSError as error:
                        if error.errno != errno.ENOSPC:
                            raise
                time.sleep(0.05)
        os.remove(name)
