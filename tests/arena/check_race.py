#!/usr/bin/env python3
"""Races of the miniature platform over loopback: check_race.py SCENARIO ARENA [--udp]."""

import os
import re
import signal
import sys

import stage
from stage import systems


def race_of_eight(play, arguments):
    """Eight pawns, of the combat mode: over TCP, through the tunnel and, where there is UDP, with positions over it. Two
    zones at one game centre."""
    roads = ["--udp"] if arguments.udp else []
    centre, address = play.server("zone", "--name", "first", "--key", "secret")
    other, _ = play.server("zone", "--name", "second", "--centre", address)
    other.expect("The game centre lists this zone")
    namesake, _ = play.server("zone", "--name", "second", "--centre", address)
    namesake.expect("The game centre refuses this zone")
    impostor, _ = play.server("game", "--name", "impostor", "--zone", address)
    centre.expect("Refused 'impostor' as a game server")
    game, _ = play.server("game", "--zone", address, "--key", "secret", *roads)
    game.expect("Registered at the zone")
    players = play.play("race", address, "--players", "8", *roads)
    players.wait()
    players.expect("^players: 8 done, 0 findings$")
    stage.expect_counts(players, {
        "2 zones": 8,
        "CCmdGC_gameZoneListRequest -> CCmdGC_gameZoneListResponse": 8,
        "CCmdGZ_ZoneInfoRequest -> CCmdGZ_ZoneInfoResponse": 8,
        "CCmdPlayerCountOnLineRequest -> CCmdPlayerCountOnLineResponse": 8,
        "CCmdInGamePlayerCountRequest -> CCmdInGamePlayerCountResponse": 8,
        "CCmdGZ_playerEnter -> CCmdGZ_playerEnterOk": 8,
        "CCmdGZ_playerEnter -> CCmdGZ_playerEnterFail": 8,
        "CCmdGZ_createGame -> CCmdGZ_createGameOk": 2,
        "CCmdGZ_createGame -> CCmdGZ_createGameFail": 2,
        "CCmdGZ_gameReady -> CCmdGZ_gameReadyOk": 9,
        "CCmdGZ_gameUnready -> CCmdGZ_gameUnreadyOk": 1,
        "CCmdGZ_gameUnready -> CCmdGZ_gameUnreadyFail": 1,
        "CCmdGZ_StartGameRequest -> CCmdGZ_StartGameReply": 16,
        "<- CCmdGZ_CombatStart": 8,
        "<- CCmdGZ_ConnectGameSvr": 8,
        "<- CCmdGS_joinGameFail": 8,
        "<- CCmdGS_joinGameOk": 8,
        "<- CCmdUdpServerConnectFail": 5 if arguments.udp else 0,
        "<- CCmdUdpServerConnectOk": 5 if arguments.udp else 0,
        "<- CCmdGS_OtherJoin": 56,
        "<- CCmdGS_PlayerEnter": 56,
        "<- CCmdGS_GamePlayer": 56,
        "<- CCmdGS_test": 8,
        "<- CCmdGS_testSyncPos": 3 if arguments.udp else 8,
        "<- CCmdGS_testSyncPos over UDP": 5 if arguments.udp else 0,
        "<- CCmdGS_PawnReady": 56,
        "<- CCmdGS_AllPlayerReady": 8,
        "<- CCmdGS_PlayersChat": 8,
        "<- CCmdGS_PlayerEquipAttribute": 7,
        "<- CCmdGS_AllRunDown": 8,
        "<- CCmdGS_PawnCanRun": 8,
        "<- CCmdGS_PawnStartRun": 64,
        "<- CCmdGS_PowerTime": 7,
        "<- CCmdGS_PawnFouled": 16,
        "<- CCmdGS_PawnScore": 64,
        "<- CCmdGS_PlayerReward": 64,
        "<- CCmdGS_RaceBalanceOK": 8,
        "<- CCmdGS_exitGameFail": 8,
        "<- CCmdGS_exitGameOk": 8,
        "<- CCmdGZ_gameOver": 8,
        "CCmdGZ_CBRankDataPackRequest -> CCmdGZ_CBRankDataPackReply": 8,
        "CCmdGZ_playerExit -> CCmdGZ_playerExitFail": 16,
        "CCmdGZ_playerExit -> CCmdGZ_playerExitOk": 8,
        # One pawn has each place.
        **{f"back with {coins} coins": 1 for coins in range(10, 90, 10)},
    })
    centre.expect("Game Ann-1 1 is removed")
    # The same zone carries a race of one pawn after it.
    alone = play.play("race", address, "--players", "1", "--name", "alone")
    alone.wait()
    stage.expect_counts(alone, {"<- CCmdGS_PawnScore": 1, "back with 80 coins": 1})
    for process in (game, impostor, namesake, other, centre):
        play.stop(process)


def killed_game_server(play, _):
    """A game server is killed while four pawns run: the players are back in the zone, which races on with another one."""
    zone, address = play.server("zone")
    game, _ = play.server("game", "--name", "first", "--zone", address)
    game.expect("Registered at the zone")
    players = play.play("race", address, "--players", "4", "--until-lost")
    for number in range(1, 5):
        players.expect(f"^Ann-{number}: CCmdInGamePlayerCountRequest ")
    os.kill(game.child.pid, signal.SIGKILL)
    players.wait()
    players.expect("^players: 4 done, 0 findings$")
    stage.expect_counts(players, {
        "<- CCmdGS_PawnCanRun": 4,
        "<- CCmdGS_PawnScore": 0,
        "<- CCmdGZ_gameOver": 4,
        "CCmdGZ_playerExit -> CCmdGZ_playerExitOk": 4,
        "back with 0 coins": 4,
    })
    zone.expect("Game server first is lost")
    game, _ = play.server("game", "--name", "second", "--zone", address)
    game.expect("Registered at the zone")
    again = play.play("race", address, "--players", "4")
    again.wait()
    again.expect("^players: 4 done, 0 findings$")
    stage.expect_counts(again, {"<- CCmdGS_PawnScore": 16, "CCmdGZ_playerExit -> CCmdGZ_playerExitOk": 4})
    for process in (game, zone):
        play.stop(process)


def restarted_zone(play, _):
    """A zone ends and another one takes its port: the game server finds it by itself."""
    zone, address = play.server("zone", "--name", "first")
    game, _ = play.server("game", "--zone", address)
    game.expect("Registered at the zone")
    play.stop(zone)
    game.expect("The zone is lost")
    game.lines.clear()
    second = play.start("zone", "--name", "second", "--port", address.split(":")[1])
    second.expect("^listening on port ")
    game.expect("Registered at the zone")
    players = play.play("race", address, "--players", "2")
    players.wait()
    players.expect("^players: 2 done, 0 findings$")
    for process in (game, second):
        play.stop(process)


def drained_servers(play, _):
    """Game server and zone are to end while pawns run: they do after the race, which loses nothing."""
    zone, address = play.server("zone")
    game, _ = play.server("game", "--zone", address)
    game.expect("Registered at the zone")
    players = play.play("race", address, "--players", "3", "--race-pause", "50")
    for number in (1, 2, 3):
        players.expect(f"^Ann-{number}: CCmdInGamePlayerCountRequest ")
    for process in (game, zone):
        process.child.send_signal(signal.SIGTERM)
    for process in (game, zone):
        process.expect("Draining")
    players.wait()
    stage.expect_counts(players, {"<- CCmdGS_PawnScore": 9, "CCmdGZ_playerExit -> CCmdGZ_playerExitOk": 3,
                                  "<- CCmdServerBusy": 3})
    game.wait()
    zone.wait()
    order = [line for line in game.lines if re.search("Draining|Race Ann-1 1 is over", line)]
    if len(order) != 2 or "Draining" not in order[0]:
        raise AssertionError("the game server began to drain after the race")


def servers_by_registry(play, _):
    """The registry leads the game server to its zone, and shuts both down."""
    registry = systems.Process("registry", [play.arena, "registry", "--port", "0"])
    play.started.append(registry)
    port = registry.expect(r"^listening on port (\d+)$").group(1)
    zone = play.start("zone", "--port", "0", "--registry", f"127.0.0.1:{port}")
    zone_port = zone.expect(r"^listening on port (\d+)$").group(1)
    if zone.expect("Registered with the registry|This version has no registration").group(0).startswith("This"):
        raise stage.Skipped("no registration")
    game, _ = play.server("game", "--registry", f"127.0.0.1:{port}")
    game.expect("Registered at the zone")
    players = play.play("race", f"127.0.0.1:{zone_port}", "--players", "2")
    players.wait()
    shutdown = systems.Process("shutdown", [play.arena, "shutdown", "--registry", port])
    play.started.append(shutdown)
    for process in (shutdown, zone, game, registry):
        process.wait()


if __name__ == "__main__":
    sys.exit(stage.main({
        "race_of_eight": race_of_eight,
        "killed_game_server": killed_game_server,
        "restarted_zone": restarted_zone,
        "drained_servers": drained_servers,
        "servers_by_registry": servers_by_registry,
    }))
