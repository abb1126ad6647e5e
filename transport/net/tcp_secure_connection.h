// The layer between the bare connection and the stream: what the stream sends and receives goes through it.
#pragma once

#include "transport/net/tcp_connection.h"

namespace zet
{

// Passes bytes as they are. The stream above reads by receive() and queues by the connection's output, which flush()
// takes from; a secure form replaces these two and the tick, and the stream does not notice.
class COMMONGROUND_API TcpSecureConnection : public TcpConnection
{
public:
    void onTick(unsigned int tick) override;
    int receive(void* data, int size) override;

protected:
    void flush() override;
};

} // namespace zet
