// Datagrams from unknown senders at a UDP port: they create no connection, and the port sends no more bytes than it
// receives. Each is two bytes of length, a byte for the sender's port, and its bytes.
#include "framework/time.h"
#include "fuzz/support/budget.h"
#include "net/quic/connection.h"

#include <netinet/in.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static zet::UdpServer server;
    static const bool isListening = server.listen(0);
    if (!isListening)
        std::abort();
    const fuzz::Budget budget(size);
    const auto before = server.getTraffic();
    while (size > 3)
    {
        const size_t length = std::min(static_cast<size_t>(data[0] | data[1] << 8), size - 3);
        sockaddr_in sender{};
        sender.sin_family = AF_INET;
        sender.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        // No socket listens on this port.
        sender.sin_port = htons(static_cast<unsigned short>(1 + data[2] % 8));
        server.deliver(sender, data + 3, static_cast<int>(length));
        data += 3 + length;
        size -= 3 + length;
    }
    server.onTick(zet::getTimeTick());
    const auto after = server.getTraffic();
    if (server.getConnectionCount() != 0 || after.m_BytesOut - before.m_BytesOut > after.m_BytesIn - before.m_BytesIn)
        std::abort();
    return 0;
}
