#!/usr/bin/env python3
"""Sessions of the miniature platform over loopback: check_sessions.py SCENARIO ARENA."""

import socket
import sys

import stage


def sport(play, _):
    """Three players in an automatic match, then in a room of their platform, which the last one leaves."""
    server, address = play.server("sport")
    players = play.play("sport", address, "--players", "3", "--until-lost")
    players.wait()
    players.expect("^players: 3 done, 0 findings$")
    stage.expect_counts(players, {
        "CCmdSport_AskServerInfoRequest -> CCmdSport_AskServerInfoReply": 1,
        "CCmdSport_StartSessionRequest -> CCmdSport_StartSessionReply": 2,
        "CmdEnterLobbyAction: good": 3,
        "CmdEnterLobbyAction: refused": 3,
        "CmdAutoMatchAction: good": 3,
        "CmdAutoMatchAction: refused": 3,
        "<- CmdCreateRoomNotify": 3,
        "CmdEnterRoomAction: good": 6,
        "<- CmdEnterRoomNotify": 6,
        "CmdPrepareGameAction: good": 6,
        "CmdSetReadyAction: good": 6,
        "CmdSetReadyAction: refused": 6,
        "CmdStartSessionAction: refused": 4,
        "<- CmdSessionStartedNotify": 6,
        "CmdSubmitActEffectDataAction: good": 5,
        "CmdEndGameAction: good": 5,
        "CmdEndGameAction: refused": 3,
        "<- CmdGameOverNotify": 5,
        "<- CmdSportCommonNotify": 2,
        "<- CCmdSport_UserDisconnectNotify": 1,
        "<- CCmdSport_GameOverMessage": 1,
    })
    whole = play.play("sport", address, "--players", "2")
    whole.wait()
    stage.expect_counts(whole, {"CmdEndGameAction: good": 4, "<- CmdGameOverNotify": 4, "<- CmdActEffectNotify": 4})
    play.stop(server)


def lesson(play, _):
    """Three users in a lesson; then three of whom the last one's connection ends while they dance."""
    server, address = play.server("lesson")
    users = play.play("lesson", address, "--players", "3")
    users.wait()
    users.expect("^players: 3 done, 0 findings$")
    stage.expect_counts(users, {
        "CCmdMazurixEnterLobbyReply: good": 3,
        "CCmdMazurixEnterLobbyReply: refused": 3,
        "CCmdMazurixGetLessonsReply: refused": 3,
        "CCmdMazurixEnterLessonReply: good": 3,
        "CCmdMazurixEnterLessonReply: refused": 3,
        "<- CCmdMazurixOnUsersEnterLessonNotify": 5,
        "<- CCmdMazurixOnLessonStartedNotify": 3,
        "CCmdMazurixSendChatReply: good": 3,
        "<- CCmdMazurixOnReceiveChatNotify": 6,
        "CCmdMazurixStartGameReply: good": 3,
        "CCmdMazurixStartGameReply: refused": 3,
        "CCmdMazurixSubmitDataReply: good": 9,
        "CCmdMazurixSubmitDataReply: refused": 3,
        "CCmdMazurixEndGameReply: good": 3,
        "<- CCmdMazurixOnLessonEndedNotify": 3,
        "<- CCmdMazurixOnDataExportedNotify": 3,
        "CCmdMazurixLeaveLessonReply: good": 1,
        "CCmdMazurixLeaveLessonReply: refused": 1,
    })
    server.expect("2 lessons")
    again = play.play("lesson", address, "--players", "3", "--until-lost")
    again.wait()
    again.expect("^players: 3 done, 0 findings$")
    stage.expect_counts(again, {
        "<- CCmdMazurixOnLessonStartedNotify": 3,
        "<- CCmdMazurixOnLessonEndedNotify": 2,
        "<- CCmdMazurixOnDataExportedNotify": 2,
    })
    again.expect("<- CCmdMazurixOnUserLeaveRoomNotify")
    play.stop(server)


def device(play, _):
    """Three seats, each with a phone and a game, and the frames of the camera."""
    server, address = play.server("device")
    users = play.play("device", address, "--players", "3")
    users.wait()
    users.expect("^players: 3 done, 0 findings$")
    # Of the frames only the first one is noted; the players check and count them all.
    stage.expect_counts(users, {
        "CCmdConnectEvent -> CCmdConnectEvent": 12,
        "CCmdHeartEvent -> CCmdHeartReply": 6,
        "CCmdTelvaInfoRequest -> CCmdTelvaInfoResponse": 3,
        "CCmdStartKinect -> CCmdStartKinectResponse": 3,
        "<- CCmdConnectPhone": 6,
        "<- CCmdConnectMobileInfo": 3,
        "<- CCmdKeyEvent": 3,
        "<- CCmdRhythmKeyEvent": 3,
        "<- CCmdMouseEvent": 3,
        "<- CCmdTouchEvent": 3,
        "<- CCmdSensorEvent": 3,
        "<- CCmdControlMode": 3,
        "<- CCmdScreenSynRequest": 3,
        "<- CCmdScreenSynResponse": 3,
        "CCmdOpenCamera -> CCmdOpenCameraReply": 12,
        "<- CCmdCameraEvent": 6,
        "<- CCmdSkeletons": 3,
        "<- CCmdMaskImage": 3,
    })
    play.stop(server)


def address_in_brackets(play, _):
    """An IPv6 address is in brackets on the command line: the brackets are not part of the host."""
    try:
        socket.create_server(("::1", 0), family=socket.AF_INET6).close()
    except OSError:
        raise stage.Skipped("no IPv6")
    server = play.start("lesson", "--port", "0", "--host", "::1")
    port = server.expect(r"^listening on port (\d+)$").group(1)
    user = play.play("lesson", f"[::1]:{port}")
    user.wait()
    user.expect("^players: 1 done, 0 findings$")
    play.stop(server)


if __name__ == "__main__":
    sys.exit(stage.main({"address_in_brackets": address_in_brackets, "device": device, "lesson": lesson,
                         "sport": sport}))
