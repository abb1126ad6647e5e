#include "framework/packet.h"

#include <algorithm>
#include <utility>

namespace zet
{

void PacketReader::attach(Input* input)
{
    attachOwner(input);
    if (input && input->getRefCount() > 0)
        rare().m_Owner = input;
}

void PacketReader::attachOwner(Input* input)
{
    detach();
    m_Input = input;
}

Unknown::Handle_T<Input> PacketReader::detach()
{
    // The source itself discards the bytes of a packet already passed.
    m_Shown = 0;
    m_HasNext = false;
    if (m_Rare)
    {
        m_Rare->m_Window.show(nullptr, 0);
        // A packet that was passed stays in place for the caller that has it.
        if (!m_IsCollectedShown)
            std::vector<unsigned char>().swap(m_Rare->m_Collected);
    }
    m_Input = nullptr;
    return m_Rare ? std::move(m_Rare->m_Owner) : Unknown::Handle_T<Input>();
}

bool PacketReader::read(InputStream& stream)
{
    stream = InputStream();
    std::span<const unsigned char> packet;
    const bool isGood = read(packet);
    if (packet.empty())
        return isGood;
    rare().m_Window.show(packet.data(), static_cast<int>(packet.size()));
    stream = InputStream(&m_Rare->m_Window);
    return true;
}

PacketReader::Rare& PacketReader::rare()
{
    if (!m_Rare)
        m_Rare = std::make_unique<Rare>();
    return *m_Rare;
}

// Skips the packet that was passed.
void PacketReader::endPacket()
{
    if (m_Rare)
        m_Rare->m_Window.show(nullptr, 0);
    if (m_Shown > 0)
        m_Input->skip(std::exchange(m_Shown, 0));
    if (std::exchange(m_IsCollectedShown, false))
        std::vector<unsigned char>().swap(m_Rare->m_Collected);
}

bool PacketReader::read(std::span<const unsigned char>& packet)
{
    packet = {};
    m_Empty = 0;
    endPacket();
    if (!m_Input)
        return true;
    if (m_Rare && !m_Rare->m_Collected.empty())
        return collect(packet);
    for (int i = 0; i < kEmptyAtOnce; ++i)
    {
        unsigned int size = m_Next;
        if (!std::exchange(m_HasNext, false))
        {
            const unsigned char* head = m_Input->view(kHeadSize);
            if (!head)
            {
                // A source that shows its bytes keeps them until there are enough; any other may run out of space.
                const int there = m_Input->available();
                return there >= kHeadSize || (there > 0 && !m_Input->view(1)) ? collect(packet) : true;
            }
            size = getLength(head);
        }
        if (size > static_cast<unsigned int>(m_Limit))
            return false;
        if (size == 0)
        {
            m_Input->skip(kHeadSize);
            ++m_Empty;
            continue;
        }
        const int whole = kHeadSize + static_cast<int>(size);
        // Usually the next length word has arrived too, and one peek covers both.
        const unsigned char* shown = m_Input->view(whole + kHeadSize);
        m_HasNext = shown != nullptr;
        if (shown)
            m_Next = getLength(shown + whole);
        else
            shown = m_Input->view(whole);
        if (!shown)
            return m_Input->available() >= whole ? collect(packet) : true;
        m_Shown = whole;
        packet = {shown + kHeadSize, size};
        return true;
    }
    return true;
}

void PacketReader::finish()
{
    endPacket();
    // The owner may skip the next packet itself.
    m_HasNext = false;
}

bool PacketReader::take(size_t upTo)
{
    std::vector<unsigned char>& collected = rare().m_Collected;
    while (collected.size() < upTo)
    {
        unsigned char piece[4096];
        const size_t want = std::min(upTo - collected.size(), sizeof piece);
        const int got = m_Input->read(piece, static_cast<int>(want));
        if (got <= 0)
            return false;
        collected.insert(collected.end(), piece, piece + got);
    }
    return true;
}

bool PacketReader::collect(std::span<const unsigned char>& packet)
{
    for (int i = 0; i < kEmptyAtOnce; ++i)
    {
        if (!take(kHeadSize))
            return true;
        const unsigned int size = getLength(m_Rare->m_Collected.data());
        if (size > static_cast<unsigned int>(m_Limit))
            return false;
        if (size == 0)
        {
            m_Rare->m_Collected.clear();
            ++m_Empty;
            continue;
        }
        if (!take(kHeadSize + size))
            return true;
        m_IsCollectedShown = true;
        packet = {m_Rare->m_Collected.data() + kHeadSize, size};
        return true;
    }
    return true;
}

void PacketWriter::attach(Output* output)
{
    attachOwner(output);
    if (output && output->getRefCount() > 0)
        m_Owner = output;
}

void PacketWriter::attachOwner(Output* output)
{
    detach();
    m_Output = output;
}

Unknown::Handle_T<Output> PacketWriter::detach()
{
    m_Output = nullptr;
    return std::move(m_Owner);
}

bool PacketWriter::write(InputStream& stream)
{
    if (!m_Output)
        return false;
    const int size = stream.available();
    if (size <= 0)
        return true;
    unsigned char head[kHeadSize];
    putHead(head, size);
    if (m_Output->write(head, kHeadSize) != kHeadSize)
        return false;
    if (const unsigned char* bytes = stream.view(size))
    {
        if (m_Output->write(bytes, size) != size)
            return false;
        return stream.skip(size) == size;
    }
    unsigned char piece[4096];
    for (int left = size; left > 0;)
    {
        const int count = stream.read(piece, std::min<int>(left, sizeof piece));
        if (count <= 0 || m_Output->write(piece, count) != count)
            return false;
        left -= count;
    }
    return true;
}

} // namespace zet
