// The tick of a connection that carries packets: of a command socket and of a net session's link.
#pragma once

#include "framework/inner/fast_paths.h"
#include "framework/packet.h"
#include "framework/peer_log.h"
#include "framework/stopwatch.h"
#include "net/tcp/inner/bounds.h"
#include "net/tcp/inner/link.h"
#include "net/tcp/stream.h"

#include <optional>

namespace zet::inner
{

// One tick: whole packets are handed on within the time, then the stream's own tick runs, then the owner learns whether
// the connection continues. The owner keeps itself alive meanwhile: what it is handed may release the last handle.
class PacketTick
{
public:
    // Whether a tick would find something to do. Asks the operating system if no System did for this tick.
    static bool isDue(TcpStream& stream)
    {
        stream.look();
        return !stream.isQuiet();
    }

    PacketTick(TcpStream& stream, PacketReader& reader, PeerLog& log, bool& isBroken)
        : m_Stream(stream), m_Reader(reader), m_Log(log), m_IsBroken(isBroken)
    {
        if (stream.m_Bounds)
            beginBounds();
    }

    // Calls take(packet) for each packet until limit milliseconds have passed, which is tested before each packet; the
    // other packets wait for the next tick, which then comes at once. A packet above the rate of the connection's
    // limits waits for the tick at which it is allowed, or is dropped, or breaks the connection. isBroken ends this; it
    // is set if the byte stream cannot be trusted any more, and take() may set it too. Returns whether the connection
    // continues: it is connecting or established, and not broken.
    template <class Take>
    bool run(unsigned int tick, unsigned int limit, Take take)
    {
        m_Stream.reportOpen();
        dispatch(limit, take);
        m_Stream.tickStream(tick);
        m_Stream.reportOpen();
        const TcpConnection::ConnectionState state = m_Stream.getConnectionState();
        if ((state != TcpConnection::kConnecting && state != TcpConnection::kEstablished) || m_IsBroken)
            return false;
        if (m_IsDelayed)
            m_Stream.waitForRate();
        else if (m_Stream.isPending(TcpConnection::kReadable | TcpConnection::kSecureInput | TcpConnection::kUnread))
            m_Stream.hurry();
        return true;
    }

private:
    template <class Take>
    void dispatch(unsigned int limit, Take take)
    {
        const TcpConnection* const peer = &m_Stream;
        const PeerLog::Scope scope(
            m_Log, peer, [](const void* stream) { return static_cast<const TcpConnection*>(stream)->getPeerName(); },
            &TcpConnection::logRateOf);
        // An exception from take() leaves the bytes after its packet to the next tick.
        m_Stream.setPending(TcpConnection::kUnread);
        if (takeAll(limit, take))
            m_Stream.clearPending(TcpConnection::kUnread);
    }
    // False if packets may be left for the next tick.
    template <class Take>
    bool takeAll(unsigned int limit, Take take)
    {
        // Time passes in take(), so it counts from the first packet on, if more may follow: one packet needs no clock.
        std::optional<Stopwatch> watch;
        for (bool isFirst = true; isEstablished(); isFirst = false)
        {
            if (isExhausted())
                return true;
            if (m_IsBroken || !(isFirst || (watch && watch->isBelow(limit))) || (m_Rate && isDelayed()))
                return false;
            std::span<const unsigned char> packet = takeWhole();
            if (!watch && (!kHasFastPaths || !isExhausted()))
                watch.emplace();
            if (!packet.empty())
            {
                const BlockPin pin(*m_Stream.m_Link->m_Input.block());
                if (!m_Rate || isAllowed(packet.size()))
                    take(packet);
                continue;
            }
            // Receives, and handles packets that are cut, empty or too long.
            if (!m_Reader.read(packet))
            {
                m_IsBroken = true;
                m_Stream.noteCause({EndCause::kPacketTooLong, 0});
                return false;
            }
            if (m_Rate)
                m_Rate->take(m_Reader.getEmpty(), m_Reader.getEmpty() * PacketReader::kHeadSize);
            if (!packet.empty())
                takeRead(packet, take);
            else if (!m_Reader.hasPaused())
                return true;
        }
        return true;
    }
    template <class Take>
    void takeRead(std::span<const unsigned char> packet, Take take)
    {
        // Another source of the reader has bytes of its own.
        Block* const block = m_Stream.m_Link ? m_Stream.m_Link->m_Input.block() : nullptr;
        std::optional<BlockPin> pin;
        if (block)
            pin.emplace(*block);
        // As in takeWhole(): a handler that reads from the stream gets what follows its packet.
        if (block && block->holds(packet.data()))
            m_Reader.finish();
        if (!m_Rate || isAllowed(packet.size()))
            take(packet);
        m_Reader.finish();
    }
    // Whether the stream has nothing to read. Another source of the reader may have packets all the same.
    bool isExhausted() const
    {
        return m_Stream.m_Link && m_Stream.m_Link->m_Input.size() == 0 && !m_Stream.isWorthReceiving() &&
               m_Reader.reads(&m_Stream);
    }
    // A whole packet straight from the input buffer, which is filled if it is empty: most packets, without the reader's
    // virtual calls. Its bytes stay in the buffer until the next receive.
    std::span<const unsigned char> takeWhole()
    {
        if constexpr (!kHasFastPaths)
            return {};
        if (m_Stream.m_Link->m_Input.size() == 0 && m_Reader.reads(&m_Stream))
            m_Stream.view(PacketReader::kHeadSize);
        // An override of receive() may have closed the connection.
        if (!m_Stream.m_Link)
            return {};
        InputBuffer& input = m_Stream.m_Link->m_Input;
        const auto packet = m_Reader.findWhole(&m_Stream, input.data(), input.size());
        if (!packet.empty())
            input.consume(PacketReader::kHeadSize + static_cast<int>(packet.size()));
        return packet;
    }
    void beginBounds()
    {
        m_Stream.beginOwnTurn();
        InputRate& rate = m_Stream.m_Bounds->m_Rate;
        if (!rate.isOn())
            return;
        m_Rate = &rate;
        rate.refill();
    }
    // Whether the next packet has to wait.
    bool isDelayed()
    {
        m_IsDelayed = m_Rate->getOverRate() == NetLimits::kDelay && !m_Rate->isOpen();
        return m_IsDelayed;
    }
    // Whether a packet that was received may be handled.
    bool isAllowed(size_t size)
    {
        if (m_Rate->isOpen() || m_Rate->getOverRate() == NetLimits::kDelay)
        {
            m_Rate->take(1, static_cast<long long>(size) + PacketReader::kHeadSize);
            return true;
        }
        if (m_Rate->getOverRate() == NetLimits::kRefuse)
        {
            m_Stream.refusePacket(size);
            return false;
        }
        m_IsBroken = true;
        m_Stream.noteCause({EndCause::kRateLimited, 0});
        return false;
    }
    bool isEstablished() const { return m_Stream.getConnectionState() == TcpConnection::kEstablished; }

    TcpStream& m_Stream;
    PacketReader& m_Reader;
    PeerLog& m_Log;
    bool& m_IsBroken;
    // Null without a rate. A connection keeps the object.
    InputRate* m_Rate = nullptr;
    bool m_IsDelayed = false;
};

} // namespace zet::inner
