// A buffered connection with a readable and a writable side.
#pragma once

#include "framework/stream.h"
#include "net/tcp/secure_connection.h"

namespace zet
{

// Reading takes from the network when what is buffered does not do; it never waits. An end or a fault of the
// connection shows only behind the last byte that came before it. An idle stream holds no buffer.
class COMMONGROUND_API TcpStream : public TcpSecureConnection, public IO
{
public:
    bool attach(unsigned int handle) override;
    // What was received and not read is forgotten.
    void close() override;
    // Receives what is ready where nothing is buffered.
    void onTick(unsigned int tick) override;

    // Bytes that it receives at most until the next call; 0 or less for none. For an owner that ticks several
    // connections and gives each its turn. A connection that is closed, or attached anew, has no such bound.
    void setTurn(int bytes) { m_Turn = bytes; }
    static constexpr int kEndlessTurn = 0x7FFFFFFF;

    // Bytes that are buffered; more may be ready.
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
    void fill(int wanted);

    int m_Turn = kEndlessTurn;
};

} // namespace zet
