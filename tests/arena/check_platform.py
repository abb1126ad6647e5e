"""Starts two platforms on one database and plays a player's scripts against them.

  check_platform.py sqlite|postgresql ARENA WAITING_PLAYER

Checks: all scripts succeed; a login at one platform ends the session at the other one; after a kill -9 of a platform,
and of PostgreSQL too, they succeed again; the audit is clean. Returns 77 where it is missing.
"""
import glob
import os
import pwd
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import urllib.parse

SKIPPED = 77
PATIENCE = 60

# What the transcript of the scripts must contain: each exchange with its refusals.
DONE = ["logins done", "bindings done", "billing done", "progress done", "void data done", "mail done", " 0 findings"]


class Failure(Exception):
    pass


def run(words, **options):
    return subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=PATIENCE,
                          **options)


class Platform:
    def __init__(self, arena, url, folder, name, *options):
        self.output = open(os.path.join(folder, name + ".txt"), "w+")
        self.process = subprocess.Popen(
            [arena, "platform", "--db", url, "--name", name, "--log-folder", os.path.join(folder, name), *options],
            stdout=self.output, stderr=subprocess.STDOUT)
        self.port = self.wait_for(r"listening on port (\d+)")

    def text(self):
        self.output.seek(0)
        return self.output.read()

    def wait_for(self, pattern):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            found = re.search(pattern, self.text())
            if found:
                return found.group(1)
            if self.process.poll() is not None:
                break
            time.sleep(0.05)
        raise Failure("the platform does not print '%s':\n%s" % (pattern, self.text()))

    def end(self, number):
        self.process.send_signal(number)
        self.process.wait(PATIENCE)


def play(arena, port, name, *words):
    return run([arena, "player", "--platform", "127.0.0.1:" + port, "--name", name, "--verbose", *words])


def play_all(arena, port, name):
    result = play(arena, port, name)
    for words in DONE:
        if result.returncode != 0 or words not in result.stdout:
            raise Failure("the scripts of %s failed:\n%s" % (name, result.stdout))


def check(arena, waiting_player, url, folder, restart=None):
    first = Platform(arena, url, folder, "first")
    second = Platform(arena, url, folder, "second")
    try:
        play_all(arena, first.port, "Ann")
        # The script chooses servers too.
        chosen = play(arena, first.port, "Ann", "--script", "login", "--choose-server")
        if chosen.returncode != 0 or "logins done" not in chosen.stdout:
            raise Failure("no logins with a choice of the server:\n" + chosen.stdout)
        # A login at the second platform ends the one at the first.
        waiting = subprocess.Popen([waiting_player, first.port, "Ann"], stdout=subprocess.PIPE, text=True)
        line = waiting.stdout.readline()
        if line != "logged in\n":
            raise Failure("no login before the second one: " + line)
        login = play(arena, second.port, "Ann", "--script", "echo")
        if login.returncode != 0:
            raise Failure("no second login:\n" + login.stdout)
        rest = waiting.communicate(timeout=PATIENCE)[0]
        if waiting.returncode != 0 or "CCmdAccountKickOut" not in rest:
            raise Failure("the first login was not ended:\n" + rest)
        if restart:
            restart()
        first.end(signal.SIGKILL)
        first = Platform(arena, url, folder, "first-again")
        # The second one had a connection to the database before the restart.
        play_all(arena, second.port if restart else first.port, "Ben")
        login = play(arena, first.port, "Ann", "--script", "echo")
        if login.returncode != 0:
            raise Failure("no login after the kill:\n" + login.stdout)
    finally:
        for platform in (first, second):
            if platform.process.poll() is None:
                platform.end(signal.SIGTERM)
    for platform in (first, second):
        if platform.process.returncode != 0:
            raise Failure("a platform returned %d:\n%s" % (platform.process.returncode, platform.text()))
    find_faults(arena, url)


def find_faults(arena, url):
    audit = run([arena, "audit", "--db", url])
    print(audit.stdout, end="")
    if audit.returncode != 0 or " 0 findings" not in audit.stdout:
        raise Failure("the audit is not clean")


class Cluster:
    """A PostgreSQL server of this test's own, in a folder, reachable by a socket there only."""

    def __init__(self, folder):
        self.folder = folder
        programs = sorted(glob.glob("/usr/lib/postgresql/*/bin"))
        self.programs = programs[-1] if programs else None
        # It refuses to run as root.
        self.user = {}
        if os.geteuid() == 0:
            try:
                person = pwd.getpwnam("nobody")
            except KeyError:
                self.programs = None
                return
            self.user = {"user": person.pw_uid, "group": person.pw_gid, "extra_groups": []}
            os.chmod(folder, 0o755)
            self.home = os.path.join(folder, "postgresql")
            os.mkdir(self.home)
            os.chown(self.home, person.pw_uid, person.pw_gid)
        else:
            self.home = folder

    def call(self, program, *words):
        result = run([os.path.join(self.programs, program), *words], cwd=self.home, **self.user)
        if result.returncode != 0:
            raise Failure("%s failed:\n%s" % (program, result.stdout))

    def start(self):
        self.data = os.path.join(self.home, "data")
        self.options = "-c fsync=off -c listen_addresses='' -c unix_socket_directories='%s'" % self.home
        self.call("initdb", "-D", self.data, "-U", "arena", "--auth=trust", "--no-sync", "-E", "UTF8", "--locale=C")
        self.call("pg_ctl", "-D", self.data, "-w", "-l", os.path.join(self.home, "log"), "-o",
                  self.options, "start")
        return "postgresql://arena@" + urllib.parse.quote(self.home, safe="") + "/postgres"

    def url_with_parameter(self):
        return "postgresql://arena@/postgres?host=" + self.home

    def restart(self):
        """Kills it, as a crash would."""
        self.stop()
        self.call("pg_ctl", "-D", self.data, "-w", "-l", os.path.join(self.home, "log"), "start", "-o", self.options)

    def stop(self):
        self.call("pg_ctl", "-D", self.data, "-m", "immediate", "stop")


def main():
    kind, arena, waiting_player = sys.argv[1:4]
    folder = tempfile.mkdtemp(prefix="arena")
    try:
        if kind == "sqlite":
            check(arena, waiting_player, "sqlite://" + os.path.join(folder, "arena.db"), folder)
            return 0
        cluster = Cluster(folder)
        if not cluster.programs:
            print("PostgreSQL is missing")
            return SKIPPED
        url = cluster.start()
        try:
            check(arena, waiting_player, url, folder, cluster.restart)
            find_faults(arena, cluster.url_with_parameter())
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
