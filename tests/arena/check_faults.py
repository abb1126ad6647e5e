#!/usr/bin/env python3
"""Faults while players play: check_faults.py SCENARIO ARENA HAPROXY_CFG [--seed N] [--players N] [--seconds N] [--udp].

  services                kill -9 of PostgreSQL, of HAProxy and of two platforms, in turn; each is started again
  balanced                of three platforms behind HAProxy one is killed and started again, and one drained
  disk_full_sqlite        the disk of the database is full for ten seconds
  disk_full_postgresql    the same; PostgreSQL is started again if it ends
  loss                    5 % of the packets between players and servers are lost
  late_bill               a bill that cannot be saved is applied later, by the platform itself
  login_after_restart     PostgreSQL is restarted; then a login at one platform ends the one at another

What follows from the seed, which is printed: the order of the faults, their moments and how long they last. Checks: the
players come back by themselves and play all scripts to their ends; a refusal comes during an outage only; what was
acknowledged to a player is in the database; the audit is clean. Returns 77 where a program or a permission is missing.
"""
import argparse
import contextlib
import json
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from check_haproxy import SCRIPTS, count_logins, find_haproxy  # noqa: E402
from check_networks import Networks  # noqa: E402
from check_platform import PATIENCE, SKIPPED, Failure, Platform, find_faults, run  # noqa: E402
from outages import (QUERIES, RECOVERY, Disk, FragileBalancer, FragileCluster, FragilePlatform, Outages,  # noqa: E402
                     Players, Skipped, done_of, end_well, find_lost, play_words, select_sqlite)

DISK_FULL = 10


@contextlib.contextmanager
def behind_balancer(options, folder, *names):
    """Platforms of these names behind HAProxy, on one PostgreSQL; failures come with what they have printed."""
    program = find_haproxy()
    cluster = FragileCluster(folder)
    if not program or not cluster.programs or not shutil.which("curl"):
        raise Skipped("HAProxy, PostgreSQL or curl is missing")
    platforms = {}
    balancer = None
    url = cluster.start()
    try:
        for name in names:
            platforms[name] = FragilePlatform(options.arena, url, folder, name)
        balancer = FragileBalancer(program, options.configuration, folder, platforms)
        yield cluster, platforms, balancer
        find_faults(options.arena, url)
    except Failure as failure:
        raise Failure("%s\n%s" % (failure, "\n".join(platform.running.text()[-4000:]
                                                     for platform in platforms.values()))) from None
    finally:
        if balancer:
            balancer.end()
        for platform in platforms.values():
            platform.running.process.kill()
            platform.running.process.wait()
        if cluster.is_alive():
            cluster.stop()


def services(options, folder):
    chance = random.Random(options.seed)
    outages = Outages()
    with behind_balancer(options, folder, "FIRST", "SECOND") as (cluster, platforms, balancer):
        def kill_platform(name):
            def kill(pause):
                platforms[name].end(signal.SIGKILL)
                time.sleep(pause)
                platforms[name].start()
            return kill

        def kill_balancer(pause):
            balancer.end()
            time.sleep(pause)
            balancer.start()

        def kill_cluster(pause):
            cluster.kill()
            time.sleep(pause)
            cluster.come_back()

        victims = [("PostgreSQL", kill_cluster), ("HAProxy", kill_balancer), ("the first platform",
                   kill_platform("FIRST")), ("the second platform", kill_platform("SECOND"))]
        made = 0
        begin = time.monotonic()
        with Players([options.arena], "--platform", "127.0.0.1:" + balancer.port, "--outages",
                     *play_words(SCRIPTS, options)) as players:
            players.wait_for("CCmdBaseLogin -> CCmdLoginSuccess", options.players)
            while made == 0 or time.monotonic() < begin + options.seconds - RECOVERY:
                chance.shuffle(victims)
                for name, kill in victims:
                    time.sleep(chance.uniform(0.3, 2))
                    with outages.during("%s is killed" % name):
                        kill(chance.uniform(0.1, 1))
                    made += 1
            players.finish(options.seconds, outages, done_of(SCRIPTS))
        end_well([platform.running for platform in platforms.values()])
        print("%d faults, %d connections lost, %d refusals" % (made, players.count("no connection"),
                                                               len(players.refusals)))
        find_lost(players.saved, cluster.select)


def balanced(options, folder):
    chance = random.Random(options.seed)
    with behind_balancer(options, folder, "FIRST", "SECOND", "THIRD") as (cluster, platforms, balancer):
        with Players([options.arena], "--platform", "127.0.0.1:" + balancer.port,
                     *play_words(SCRIPTS, options)) as players:
            # Each moves to another platform with each of its connections.
            players.wait_for("CCmdBaseLogin -> CCmdLoginSuccess", options.players)
            time.sleep(chance.uniform(0.3, 2))
            logins = {name: count_logins(platform) for name, platform in platforms.items()}
            killed, drained, other = chance.sample(sorted(platforms), 3)
            print("logins: %s; %s is killed, %s drains" % (logins, killed, drained), flush=True)
            platforms[killed].end(signal.SIGKILL)
            time.sleep(chance.uniform(0.3, 2))
            platforms[killed].start()
            time.sleep(chance.uniform(2, 3))
            platforms[drained].running.process.send_signal(signal.SIGTERM)
            players.finish(options.seconds, Outages(), done_of(SCRIPTS))
        if platforms[drained].running.process.wait(PATIENCE) != 0:
            raise Failure("the drained platform failed")
        # The killed one counts from its new start.
        later = {killed: count_logins(platforms[killed]), other: count_logins(platforms[other]) - logins[other]}
        interrupted = players.count("no connection") + players.count("has ended")
        if min([*logins.values(), *later.values(), interrupted]) == 0:
            raise Failure("a platform got no player, or none was interrupted: %s" % later)
        end_well([platforms[name].running for name in (killed, other)])
        print("%d connections lost; logins since: %s" % (interrupted, later))
        find_lost(players.saved, cluster.select)


def disk_full(options, folder, open_database):
    chance = random.Random(options.seed)
    disk = Disk(folder)
    url, select, watch, stop = open_database(disk)
    outages = Outages()
    platform = players = None
    try:
        platform = Platform(options.arena, url, folder, "platform")
        players = Players([options.arena], "--platform", "127.0.0.1:" + platform.port, "--outages",
                          *play_words(SCRIPTS, options))
        players.wait_for(": saved: letter", options.players)
        time.sleep(chance.uniform(0.2, 2))
        before = {kind: len(names) for kind, names in players.saved.items()}
        with outages.during("the disk is full"):
            disk.fill(DISK_FULL)
            watch()
        refused = len(players.refusals)
        if refused == 0 and players.count("no connection") == 0:
            raise Failure("the full disk was not noticed")
        players.finish(options.seconds, outages, done_of(SCRIPTS))
        end_well([platform])
        print("acknowledged before: %s; %d refusals, %d connections lost" % (before, refused,
                                                                             players.count("no connection")))
        find_lost(players.saved, select)
        find_faults(options.arena, url)
    except Failure as failure:
        raise Failure("%s\n%s" % (failure, platform.text()[-4000:] if platform else "")) from None
    finally:
        if players:
            players.end()
        if platform:
            platform.process.kill()
            platform.process.wait()
        stop()


def disk_full_sqlite(options, folder):
    def open_database(disk):
        file = os.path.join(disk.folder, "arena.db")
        return "sqlite://" + file, select_sqlite(file), lambda: None, lambda: None
    disk_full(options, folder, open_database)


def disk_full_postgresql(options, folder):
    def open_database(disk):
        cluster = FragileCluster(disk.folder)
        if not cluster.programs:
            raise Skipped("PostgreSQL is missing")
        url = cluster.start()

        def watch():
            if not cluster.is_alive():
                print("PostgreSQL has ended and is started again")
                cluster.come_back()

        def stop():
            if cluster.is_alive():
                cluster.stop()
        return url, cluster.select, watch, stop
    disk_full(options, folder, open_database)


def late_bill(options, folder):
    file = os.path.join(folder, "arena.db")
    url = "sqlite://" + file
    select = select_sqlite(file)
    platform = Platform(options.arena, url, folder, "platform")

    def change(statement):
        with contextlib.closing(sqlite3.connect(file)) as database, database:
            database.execute(statement)

    try:
        change("CREATE TRIGGER failing BEFORE INSERT ON bills BEGIN SELECT RAISE(ABORT, 'no bills'); END")
        played = run([options.arena, "player", "--platform", "127.0.0.1:" + platform.port, "--script", "billing"])
        if played.returncode == 0 or len(select("SELECT order_number FROM payments")) != 1 or select(QUERIES["bill"]):
            raise Failure("a bill that fails is not refused:\n" + played.stdout)
        change("DROP TRIGGER failing")
        end = time.monotonic() + PATIENCE
        while not select(QUERIES["bill"]):
            if time.monotonic() > end:
                raise Failure("the bill is not applied later")
            time.sleep(0.05)
        end_well([platform])
        find_faults(options.arena, url)
    finally:
        platform.process.kill()
        platform.process.wait()


def login_after_restart(options, folder):
    cluster = FragileCluster(folder)
    if not cluster.programs:
        raise Skipped("PostgreSQL is missing")
    url = cluster.start()
    platforms = []
    waiting = None
    try:
        for name in ("first", "second"):
            platforms.append(Platform(options.arena, url, folder, name))
        waiting = subprocess.Popen([options.waiting_player, platforms[0].port, "Ann"], stdout=subprocess.PIPE,
                                   text=True)
        if waiting.stdout.readline() != "logged in\n":
            raise Failure("no login before the restart")
        cluster.kill()
        cluster.come_back()
        # Only the second platform has something to ask.
        login = run([options.arena, "player", "--platform", "127.0.0.1:" + platforms[1].port, "--name", "Ann",
                     "--script", "echo"])
        if login.returncode != 0:
            raise Failure("no login after the restart:\n" + login.stdout)
        try:
            rest = waiting.communicate(timeout=PATIENCE / 4)[0]
        except subprocess.TimeoutExpired:
            raise Failure("the first login was not ended") from None
        if waiting.returncode != 0 or "CCmdAccountKickOut" not in rest:
            raise Failure("the first login was not ended by the second one:\n" + rest)
        end_well(platforms)
        find_faults(options.arena, url)
    finally:
        if waiting:
            waiting.kill()
            waiting.wait()
        for platform in platforms:
            platform.process.kill()
            platform.process.wait()
        if cluster.is_alive():
            cluster.stop()


LOSS = """
table inet loss {
    chain input {
        type filter hook input priority 0;
        iifname "net" numgen random mod 100 < 5 counter drop
    }
}
"""


def loss(options, folder):
    if not shutil.which("ip") or not shutil.which("nft"):
        raise Skipped("ip or nft is missing")
    networks = Networks()
    processes = []
    players = None
    try:
        try:
            networks.make()
        except subprocess.CalledProcessError as fault:
            raise Skipped("network namespaces are not permitted: %s" % fault.output) from None
        inside = [["ip", "netns", "exec", name] for name in networks.names]
        for command in inside[1:]:
            made = run([*command, "nft", "-f", "-"], input=LOSS)
            if made.returncode != 0:
                raise Skipped("no rules of packets: " + made.stdout)

        def serve(role, port, *words):
            output = open(os.path.join(folder, role + ".txt"), "w+")
            processes.append(subprocess.Popen(
                [*inside[1], options.arena, role, "--host", "10.77.0.2", "--port", port, *words], cwd=folder,
                stdout=output, stderr=subprocess.STDOUT))
            end = time.monotonic() + PATIENCE
            while True:
                output.seek(0)
                text = output.read()
                if "listening on port " + port in text:
                    return
                if time.monotonic() > end or processes[-1].poll() is not None:
                    raise Failure("%s does not start:\n%s" % (role, text))
                time.sleep(0.05)

        file = os.path.join(folder, "arena.db")
        registry = ("--registry", "10.77.0.2:7000", "--peers", "10.77.0.0/24")
        serve("registry", "7000", "--peers", "10.77.0.0/24")
        serve("zone", "7001", *registry)
        serve("game", "7002", *registry, *(["--udp"] if options.udp else []))
        serve("platform", "7003", *registry, "--db", "sqlite://" + file)
        scripts = [*SCRIPTS, "race"]
        players = Players([*inside[2], options.arena], "--platform", "10.77.0.2:7003", "--server",
                          "zone=10.77.0.2:7001", *(["--udp"] if options.udp else []), *play_words(scripts, options))
        players.finish(options.seconds, Outages(), done_of(scripts))
        dropped = 0
        for command in inside[1:]:
            rules = json.loads(run([*command, "nft", "-j", "list", "chain", "inet", "loss", "input"]).stdout)
            dropped += sum(word["counter"]["packets"] for item in rules["nftables"]
                           for word in item.get("rule", {}).get("expr", []) if "counter" in word)
        if dropped == 0:
            raise Failure("no packet was lost")
        print("%d packets lost, %d connections lost" % (dropped, players.count("no connection")))
        # The registry has no end of its own.
        for process in reversed(processes[1:]):
            process.send_signal(signal.SIGTERM)
            if process.wait(PATIENCE) != 0:
                raise Failure("%s returned %d" % (" ".join(process.args[4:]), process.returncode))
        find_lost(players.saved, select_sqlite(file))
        find_faults(options.arena, "sqlite://" + file)
    finally:
        if players:
            players.end()
        for process in processes:
            process.kill()
            process.wait()
        networks.remove()


SCENARIOS = {"services": services, "balanced": balanced, "disk_full_sqlite": disk_full_sqlite,
             "disk_full_postgresql": disk_full_postgresql, "loss": loss, "late_bill": late_bill,
             "login_after_restart": login_after_restart}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("scenario", choices=sorted(SCENARIOS))
    parser.add_argument("arena")
    parser.add_argument("configuration")
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1000000))
    parser.add_argument("--players", type=int, default=4)
    parser.add_argument("--seconds", type=int, default=10, help="how long players begin scripts")
    parser.add_argument("--waiting-player", help="the program of login_after_restart")
    parser.add_argument("--udp", action="store_true", help="this build has UDP")
    options = parser.parse_args()
    options.arena = os.path.abspath(options.arena)
    # What is mounted is seen here only, and is gone with the last process.
    if options.scenario.startswith("disk_full") and "ARENA_MOUNTS" not in os.environ:
        if not shutil.which("unshare") or run(["unshare", "-m", "true"]).returncode != 0:
            print("skipped: file systems of its own are not permitted")
            return SKIPPED
        os.environ["ARENA_MOUNTS"] = "1"
        os.execvp("unshare", ["unshare", "-m", sys.executable, "-B", *sys.argv, "--seed", str(options.seed)])
    print("seed %d" % options.seed, flush=True)
    folder = tempfile.mkdtemp(prefix="arena")
    os.chmod(folder, 0o755)
    try:
        SCENARIOS[options.scenario](options, folder)
        return 0
    except Skipped as reason:
        print("skipped: %s" % reason)
        return SKIPPED
    except Failure as failure:
        print(failure)
        return 1
    finally:
        if options.scenario.startswith("disk_full"):
            run(["umount", "-l", os.path.join(folder, "disk")])
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
