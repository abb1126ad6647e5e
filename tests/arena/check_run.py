#!/usr/bin/env python3
"""Whole runs of the miniature platform: check_run.py SCENARIO ARENA [--udp]."""

import os
import re
import shutil
import subprocess
import sys

import stage
from stage import systems


def start_run(play, *words):
    process = systems.Process("run", [play.arena, "run", "--verbose", *words])
    play.started.append(process)
    return process


def make_certificates(folder):
    """authority.pem, server.pem and server.key for 127.0.0.1."""
    if not shutil.which("openssl"):
        raise stage.Skipped("no openssl")

    def openssl(*words):
        subprocess.run(["openssl", *words], cwd=folder, check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)

    curve = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes"]
    openssl("req", "-x509", *curve, "-subj", "/CN=authority", "-days", "2", "-keyout", "authority.key", "-out",
            "authority.pem")
    openssl("req", *curve, "-subj", "/CN=server", "-keyout", "server.key", "-out", "server.csr")
    with open(os.path.join(folder, "names"), "w", encoding="ascii") as names:
        names.write("subjectAltName=IP:127.0.0.1\n")
    openssl("x509", "-req", "-in", "server.csr", "-CA", "authority.pem", "-CAkey", "authority.key", "-CAcreateserial",
            "-days", "2", "-extfile", "names", "-out", "server.pem")


def run_over_udp(play, arguments):
    """Eight pawns in two races: those with own connections send positions over UDP."""
    if not arguments.udp:
        raise stage.Skipped("no UDP in this build")
    run = start_run(play, "--players", "8", "--races", "2", "--seconds", "0", "--script", "race", "--udp")
    run.wait()
    run.expect("^run: 8 players, 2 races, .* 0 findings$")
    stage.expect_counts(run, {
        "<- CCmdUdpServerConnectOk": 10,
        "<- CCmdGS_testSyncPos over UDP": 10,
        "<- CCmdGS_testSyncPos": 6,
        "CCmdGZ_playerExit -> CCmdGZ_playerExitOk": 16,
    })


def run_over_tls(play, _):
    """The players reach the platform by TLS with all their connections; a player without TLS is not served."""
    make_certificates(play.folder)
    run = start_run(play, "--players", "2", "--seconds", "0", "--script", "login", "--script", "mail", "--tls",
                    play.folder)
    if run.expect("^(platform|service) listens on port").group(1) == "service":
        raise stage.Skipped("no platform in this build")
    run.wait()
    run.expect("^run: 2 players, .* 0 interrupted, 0 faults, 0 findings$")
    stage.expect_counts(run, {"logins done": 2, "mail done": 2})
    platform = play.start("platform", "--port", "0", "--db", f"sqlite://{play.folder}/arena.db", "--certificate",
                          f"{play.folder}/server.pem", "--key", f"{play.folder}/server.key")
    port = platform.expect(r"^listening on port (\d+)$").group(1)
    plain = systems.Process("plain", [play.arena, "player", "--platform", f"127.0.0.1:{port}", "--script", "mail"])
    play.started.append(plain)
    plain.expect("^Ann: FAILED no connection: ")
    play.stop(platform)


def left_in_a_game(play, _):
    """A stranger races on when the run is over: its audit finds the player, the game and the race."""
    run = start_run(play, "--players", "2", "--seconds", "3", "--script", "race")
    zone = run.expect(r"^zone listens on port (\d+)$").group(1)
    stranger = play.play("race", f"127.0.0.1:{zone}", "--name", "Mary", "--until-lost")
    stranger.expect("^Mary: CCmdInGamePlayerCountRequest ")
    # The zone that is to end waits for its players.
    stranger.expect("<- CCmdServerBusy")
    stranger.end()
    for finding in ("zone: 1 players left open", "zone: 1 games left open", "game: 1 races left open"):
        run.expect(f"^finding: {finding}$")
    run.child.wait(systems.PATIENCE)
    if run.child.returncode != 1:
        raise AssertionError(f"the run ended with {run.child.returncode}")


def run_with_faults(play, _):
    """Each server is killed, in the order of the seed; the players come back, and the audit is clean."""
    orders = []
    for run in [start_run(play, "--players", "2", "--seconds", "0", "--faults", "--seed", "7") for _ in range(2)]:
        run.wait()
        run.expect("^seed 7$")
        run.expect("^run: 2 players, .* [1-9][0-9]* faults, 0 findings$")
        orders.append([match.group(1) for match in (re.match("^fault: (.*) is killed", line) for line in run.lines)
                       if match])
    servers = [match.group(1) for match in (re.match("^(.*) listens on port", line) for line in run.lines) if match]
    both = [order[:len(servers)] for order in orders]
    if both[0] != both[1] or sorted(both[0]) != sorted(servers):
        raise AssertionError(f"the servers {servers} were killed in the orders {both}")


if __name__ == "__main__":
    sys.exit(stage.main({
        "run_over_udp": run_over_udp,
        "run_over_tls": run_over_tls,
        "left_in_a_game": left_in_a_game,
        "run_with_faults": run_with_faults,
    }))
