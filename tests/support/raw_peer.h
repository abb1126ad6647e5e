// A peer that sends arbitrary bytes to a server of commands.
#pragma once

#include "framework/memory_stream.h"
#include "tests/support/loopback.h"

namespace test
{

// The bytes of a command as one packet.
inline std::vector<unsigned char> packetOf(const CCmdHead& command)
{
    CCmdPackager packager;
    command.Write(&packager);
    const auto frame = zet::MemoryStream::createInstance();
    zet::OutputStream stream(frame.get());
    packager.Send(stream);
    const auto wire = zet::MemoryStream::createInstance();
    zet::PacketWriter writer;
    writer.attach(wire.get());
    zet::InputStream framed(frame.get());
    writer.write(framed);
    std::vector<unsigned char> bytes(static_cast<size_t>(wire->available()));
    wire->read(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

struct RawPeer
{
    explicit RawPeer(Loopback& net) : m_Net(net), m_Stream(new zet::TcpStream)
    {
        const size_t before = net.m_Server->m_Accepted.size();
        m_Stream->start(&net.m_System);
        m_Stream->connect(L"127.0.0.1", net.m_Server->getPort(), false);
        m_IsUp = tickUntil(net.m_System, [&] { return net.m_Server->m_Accepted.size() > before; });
    }
    ~RawPeer()
    {
        m_Stream->close();
        m_Stream->stop();
    }
    bool send(const std::vector<unsigned char>& bytes)
    {
        return m_Stream->send(bytes.data(), static_cast<int>(bytes.size())) == static_cast<int>(bytes.size());
    }

    Loopback& m_Net;
    zet::Unknown::Handle_T<zet::TcpStream> m_Stream;
    bool m_IsUp;
};

} // namespace test
