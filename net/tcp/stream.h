// A buffered connection with Input and Output sides.
#pragma once

#include "framework/stream.h"
#include "net/tcp/secure_connection.h"

namespace zet
{

// A read receives from the network if the buffer has too few bytes; it never waits. An end or a fault of the connection
// is reported after the last byte that arrived before it. An idle stream has no buffer.
class COMMONGROUND_API TcpStream : public TcpSecureConnection, public IO
{
public:
    bool attach(unsigned int handle) override;
    // Discards unread input.
    void close() override;
    // Receives what is ready if the buffer is empty.
    void onTick(unsigned int tick) override;

    // The maximum of bytes received until the next call; 0 or less for none. For an owner that ticks several
    // connections in turns. close() and attach() remove the bound.
    void setTurn(int bytes) { m_Turn = bytes; }
    static constexpr int kEndlessTurn = 0x7FFFFFFF;

    // Bytes in the buffer; more may be ready.
    int available() const override;
    int peek(void* data, int size) override;
    int read(void* data, int size) override;
    const unsigned char* view(int size) override;
    int skip(int size) override;
    // As send().
    int write(const void* data, int size) override;
    // All or nothing: size, or 0.
    int send(const void* data, int size) override;

private:
    friend class inner::PacketTick;

    // onTick() without the events.
    void tickStream(unsigned int tick);
    // Sets the turn of a connection with limits of its own. REQUIRES: m_Bounds.
    void beginOwnTurn();
    // Receives until the buffer has the wanted bytes or there is no more for now.
    void fill(int wanted);

    int m_Turn = kEndlessTurn;
};

} // namespace zet
