#!/usr/bin/env python3
"""One platform with processes of both systems: check_players.py ...

This system has the registry, the platform with its accounts, and players; the other system a zone, a game server and
players. All log in and race, those of both systems at the same zone, and the audit of the accounts is clean.
"""

import sys
import tempfile

import systems

SCRIPTS = ("--script", "mail", "--script", "progress", "--script", "race")


def play(both, folder):
    started = []

    def start(system, *words):
        process = systems.Process(f"{words[0]} on {system}", both.command(system, "arena", *words))
        started.append(process)
        return process

    def server(system, role, *words):
        logs = () if role == "registry" else ("--log-folder", both.path(system, folder))
        process = start(system, role, "--port", "0", *logs, *words)
        return process, "127.0.0.1:" + process.expect(r"^listening on port (\d+)$").group(1)

    database = f"sqlite://{folder}/arena.db"
    try:
        registry, registry_address = server("linux", "registry")
        platform, platform_address = server("linux", "platform", "--db", database, "--registry", registry_address)
        zone, zone_address = server(both.foreign, "zone", "--registry", registry_address)
        game, _ = server(both.foreign, "game", "--registry", registry_address, "--zone", zone_address)
        game.expect("Registered at the zone")
        players = [start(system, "player", "--platform", platform_address, "--server", f"zone={zone_address}",
                         "--name", name, "--players", "2", *SCRIPTS)
                   for system, name in (("linux", "Ann"), (both.foreign, "Ben"))]
        for process in players:
            process.wait()
            process.expect("^players: 2 done, 0 findings$")
        audit = start("linux", "audit", "--db", database)
        audit.wait()
        audit.expect(" 0 findings$")
        start("linux", "shutdown", "--registry", registry_address.rsplit(":", 1)[1]).wait()
        for process in (platform, zone, game, registry):
            process.wait()
    except AssertionError as fault:
        print(fault)
        for process in started:
            print(f"--- {process.name}", *process.lines, sep="\n")
        return 1
    finally:
        for process in started:
            process.end()
    print(f"zone, game server and players on {both.foreign}: {len(started)} processes, all done")
    return 0


def main():
    _, both = systems.parse(__doc__)
    with tempfile.TemporaryDirectory() as folder:
        return play(both, folder)


if __name__ == "__main__":
    sys.exit(main())
