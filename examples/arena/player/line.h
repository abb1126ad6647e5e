// Further connections of a script to the server of its player, and the text form of tickets.
#pragma once

#include "framework/uuid.h"
#include "transport/command_socket.h"

namespace arena::player
{

class Player;

// A connection for the lifetime of the object. What is sent while it is connecting waits.
class Line
{
public:
    // With the handlers of all players, or with those of an analyser of its own.
    explicit Line(Player& player);
    Line(Player& player, CCmdAnalyserSocket& analyser);
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    CCommandSocket& operator*() const { return *m_Socket; }
    CCommandSocket* operator->() const { return m_Socket.get(); }
    // Whether it has ended, or could not be established.
    bool isLost() const;

private:
    const zet::Unknown::Handle_T<CCommandSocket> m_Socket;
};

// 32 hexadecimal digits.
zet::String_T<wchar_t> idText(const zet::Uuid& id);

} // namespace arena::player
