#include "host/inner/secrets.h"

#include "commands/account_access.h"
#include "commands/account_binding.h"
#include "commands/billing.h"
#include "commands/game_zone.h"
#include "commands/login.h"
#include "commands/logs.h"
#include "commands/payment.h"
#include "commands/server_choice.h"
#include "commands/zone_tunnel.h"
#include "packaging/cmd_packager.h"
#include "packs/envelope.h"
#include "packs/social.h"
#include "transport/inner/net_command_view.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace host::inner
{

namespace
{

using Bytes = std::span<unsigned char>;

// A tunnel may contain a tunnel.
constexpr int kMostTunnels = 4;
// Each field is found by reading the payload several times, so a larger payload is masked whole.
constexpr size_t kMostRead = 8192;
constexpr auto kStreamHead = static_cast<size_t>(CCmdPackager::kMinHeaderSize);
// Bytes of the size of a buffer value.
constexpr size_t kBufferCount = 4;
constexpr size_t kNumberBytes = 4;

using Text = zet::String_T<wchar_t>;

enum class Kind
{
    kText,
    kNumber,
    kId,
    kMessage // of a pack
};

// A field of a class, or one element of an array.
struct Secret
{
    unsigned short m_Id;
    std::unique_ptr<CCmdHead> (*m_Make)();
    // The first element of an array.
    void* (*m_Get)(CCmdHead& command);
    size_t m_Count;
    Kind m_Kind;

    bool isEqual(CCmdHead& one, CCmdHead& other, size_t i) const
    {
        switch (m_Kind)
        {
        case Kind::kText:
            return textOf(one, i) == textOf(other, i);
        case Kind::kNumber:
            return numberOf(one) == numberOf(other);
        case Kind::kId:
            return idOf(one) == idOf(other);
        case Kind::kMessage:
            break;
        }
        return messageOf(one) == messageOf(other);
    }
    // A field may have a default that is not empty: the seed of a social command.
    void clear(CCmdHead& command, size_t i) const
    {
        switch (m_Kind)
        {
        case Kind::kText:
            return textOf(command, i).clear();
        case Kind::kNumber:
            numberOf(command) = 0;
            return;
        case Kind::kId:
            idOf(command) = zet::Uuid();
            return;
        case Kind::kMessage:
            break;
        }
        packagerOf(command).Clear();
    }
    Text& textOf(CCmdHead& command, size_t i) const { return static_cast<Text*>(m_Get(command))[i]; }
    unsigned long& numberOf(CCmdHead& command) const { return *static_cast<unsigned long*>(m_Get(command)); }
    zet::Uuid& idOf(CCmdHead& command) const { return *static_cast<zet::Uuid*>(m_Get(command)); }
    CCmdPackager& packagerOf(CCmdHead& command) const { return *static_cast<CCmdPackager*>(m_Get(command)); }
    std::string_view messageOf(CCmdHead& command) const
    {
        const CCmdPackager& message = packagerOf(command);
        return {reinterpret_cast<const char*>(message.GetBuffer()), static_cast<size_t>(message.GetDataSize())};
    }
};

template <class Class>
std::unique_ptr<CCmdHead> make()
{
    return std::make_unique<Class>();
}

template <class Member>
constexpr Kind kindOf()
{
    constexpr bool isText = std::is_same_v<std::remove_all_extents_t<Member>, Text>;
    constexpr bool isMessage = std::is_same_v<Member, CCmdPackager>;
    constexpr bool isId = std::is_same_v<Member, zet::Uuid>;
    static_assert(isText || isMessage || isId || std::is_same_v<Member, unsigned long>,
                  "a row of secrets.def names a text, an array of texts, an unsigned long, an id or a packager");
    return isText ? Kind::kText : isMessage ? Kind::kMessage : isId ? Kind::kId : Kind::kNumber;
}

// By id, so that the rows of a class are found together.
const std::unordered_map<unsigned short, std::vector<Secret>>& getSecrets()
{
    static const auto made = []
    {
        static constexpr Secret kRows[] = {
#define SECRET(Class, member)                                                                                          \
    {command_id::Class, make<Class>, [](CCmdHead& command) -> void* { return &static_cast<Class&>(command).member; },  \
     std::max<size_t>(std::extent_v<decltype(Class::member)>, 1), kindOf<decltype(Class::member)>()},
#include "host/inner/secrets.def"
#undef SECRET
        };
        std::unordered_map<unsigned short, std::vector<Secret>> all;
        for (const Secret& each : kRows)
            all[each.m_Id].push_back(each);
        return all;
    }();
    return made;
}

bool readFirst(CCmdHead& command, Bytes payload, size_t size)
{
    CCmdPackager packager;
    // A head reads its own id only.
    packager.SetCmdID(command.GetID());
    return (size == 0 || packager.Write(payload.data(), static_cast<int>(size))) && command.Read(&packager) &&
           packager.GetReadPointer() == packager.GetDataSize();
}

// The place after the last byte of a field: with fewer bytes, its class reads something else.
size_t endOf(const Secret& secret, Bytes payload, CCmdHead& whole, size_t i)
{
    size_t low = 0;
    size_t high = payload.size();
    while (low + 1 < high)
    {
        const size_t middle = low + (high - low) / 2;
        const auto part = secret.m_Make();
        secret.clear(*part, i);
        readFirst(*part, payload, middle);
        (secret.isEqual(*part, whole, i) ? high : low) = middle;
    }
    return high;
}

unsigned int unitAt(const unsigned char* at)
{
    return at[0] | static_cast<unsigned int>(at[1]) << 8;
}

// Whether a count in its variable form ends directly before the place.
bool isCountBefore(Bytes payload, size_t place, size_t count)
{
    for (size_t size = 1; size <= 4 && size <= place; ++size)
    {
        const unsigned char* const at = payload.data() + (place - size);
        size_t value = at[0] & 0x3F;
        for (size_t i = 1; i < size; ++i)
            value = value << 8 | at[i];
        if (static_cast<size_t>(at[0] >> 6) + 1 == size && value == count)
            return true;
    }
    return false;
}

// A text is a count and that many units, which a writer may fill up with zeros.
bool hideTextBefore(Bytes payload, size_t end, size_t length)
{
    const size_t most = std::min<size_t>(CCmdPackager::kMaxTextUnits, end / 2);
    for (size_t count = length; count <= most; ++count)
    {
        unsigned char* const begin = payload.data() + (end - 2 * count);
        if (!isCountBefore(payload, end - 2 * count, count) || (count > length && unitAt(begin + 2 * length) != 0))
            continue;
        for (unsigned char* unit = begin; unit < begin + 2 * count; unit += 2)
            if (unitAt(unit) != 0)
            {
                unit[0] = '*';
                unit[1] = 0;
            }
        return true;
    }
    return false;
}

bool hideBytesBefore(Bytes payload, size_t end, size_t size)
{
    if (end < size)
        return false;
    std::memset(payload.data() + (end - size), 0, size);
    return true;
}

// The size of a message precedes its bytes.
bool hideMessageBefore(Bytes payload, size_t end, size_t size)
{
    if (end < size + kBufferCount)
        return false;
    const unsigned char* const at = payload.data() + (end - size - kBufferCount);
    const size_t said =
        static_cast<size_t>(at[0]) << 24 | static_cast<size_t>(at[1]) << 16 | static_cast<size_t>(at[2]) << 8 | at[3];
    if (said != size)
        return false;
    std::memset(payload.data() + (end - size), 0, size);
    return true;
}

bool hideField(const Secret& secret, Bytes payload)
{
    const auto whole = secret.m_Make();
    if (!readFirst(*whole, payload, payload.size()))
        return false;
    if (secret.m_Kind == Kind::kMessage)
    {
        const size_t size = secret.messageOf(*whole).size();
        return size == 0 || hideMessageBefore(payload, endOf(secret, payload, *whole, 0), size);
    }
    if (secret.m_Kind == Kind::kNumber)
        return secret.numberOf(*whole) == 0 ||
               hideBytesBefore(payload, endOf(secret, payload, *whole, 0), kNumberBytes);
    if (secret.m_Kind == Kind::kId)
        return secret.idOf(*whole).isNull() ||
               hideBytesBefore(payload, endOf(secret, payload, *whole, 0), sizeof(zet::Uuid));
    for (size_t i = 0; i < secret.m_Count; ++i)
    {
        const Text& text = secret.textOf(*whole, i);
        if (!text.isEmpty() &&
            !hideTextBefore(payload, endOf(secret, payload, *whole, i), static_cast<size_t>(text.getLength())))
            return false;
    }
    return true;
}

bool isHidden(const Secret& secret, Bytes payload)
{
    const auto whole = secret.m_Make();
    if (!readFirst(*whole, payload, payload.size()))
        return false;
    if (secret.m_Kind == Kind::kNumber)
        return secret.numberOf(*whole) == 0;
    if (secret.m_Kind == Kind::kId)
        return secret.idOf(*whole).isNull();
    if (secret.m_Kind == Kind::kMessage)
    {
        const std::string_view message = secret.messageOf(*whole);
        return std::all_of(message.begin(), message.end(), [](char byte) { return byte == 0; });
    }
    for (size_t i = 0; i < secret.m_Count; ++i)
    {
        const auto text = secret.textOf(*whole, i).view();
        if (!std::all_of(text.begin(), text.end(), [](wchar_t unit) { return unit == L'*'; }))
            return false;
    }
    return true;
}

// Masks what is not understood. Returns whether there is anything.
bool zero(Bytes bytes)
{
    std::fill(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    return !bytes.empty();
}

// Zeros what follows a frame: no class reads it. Returns whether that was anything else.
bool zeroRest(Bytes bytes)
{
    return std::any_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte != 0; }) && zero(bytes);
}

bool hasSecrets(unsigned short id)
{
    return id == command_id::CCmdGZ_clientToServer || id == command_id::CCmdGZ_serverToClient ||
           getSecrets().contains(id);
}

bool maskPayload(unsigned short id, Bytes payload, int depth);

// A frame as CCmdPackager receives it: bytes may follow it.
bool maskStreamFrame(Bytes frame, int depth)
{
    if (frame.size() < kStreamHead)
        return false;
    const auto id = static_cast<unsigned short>(unitAt(frame.data()));
    const auto size = static_cast<size_t>(CCmdPackager::GetFrameSize(frame.data()));
    if (size > frame.size())
        return hasSecrets(id) && zero(frame.subspan(kStreamHead));
    constexpr size_t kFlags = 2;
    const unsigned int addresses = frame[kFlags] & 3U;
    const size_t head = kStreamHead + (addresses == 3 ? 2 : addresses == 0 ? 0 : 1) * sizeof(zet::Uuid);
    const bool isMasked = maskPayload(id, frame.subspan(head, size - head), depth);
    return zeroRest(frame.subspan(size)) || isMasked;
}

bool maskDatagramFrame(Bytes frame)
{
    constexpr size_t kId = 2;
    if (frame.size() <= kId)
        return false;
    CCmdPackager packager;
    const auto used = static_cast<size_t>(packager.Unpack(frame.data(), static_cast<int>(frame.size())));
    const auto id = static_cast<unsigned short>(unitAt(frame.data()));
    if (used == 0)
        return hasSecrets(id) && zero(frame.subspan(kId));
    const auto size = static_cast<size_t>(packager.GetDataSize());
    const Bytes payload = frame.subspan(used - size, size);
    // Of a frame with addresses, Unpack() takes other bytes for the payload than its sender wrote.
    const bool hasAddresses = (frame[kId + (frame[kId] >> 6)] & 3U) != 0;
    const bool isMasked = hasAddresses ? hasSecrets(id) && zero(payload) : maskPayload(id, payload, 0);
    return zeroRest(frame.subspan(used)) || isMasked;
}

// The frame in a tunnel, found where the head ends. Null if the payload is not exactly a tunnel.
template <class Tunnel>
Bytes contentOf(Bytes payload)
{
    Tunnel tunnel;
    CCmdPackager packager;
    packager.SetCmdID(tunnel.GetID());
    if (!readFirst(tunnel, payload, payload.size()) ||
        !packager.Write(payload.data(), static_cast<int>(payload.size())) || !tunnel.CCmdPlatform::Read(&packager))
        return {};
    const auto begin = static_cast<size_t>(packager.GetReadPointer()) + kBufferCount;
    const auto size = static_cast<size_t>(tunnel.m_Data1.getBufferSize());
    return begin <= payload.size() && size <= payload.size() - begin ? payload.subspan(begin, size) : Bytes();
}

template <class Tunnel>
bool maskTunnel(Bytes payload, int depth)
{
    const Bytes content = contentOf<Tunnel>(payload);
    if (!content.data())
        return zero(payload);
    if (depth >= kMostTunnels || content.size() < kStreamHead ||
        CCmdPackager::GetFrameSize(content.data()) > static_cast<long long>(content.size()))
        return zero(content);
    return maskStreamFrame(content, depth + 1);
}

// Whether it is the payload of a class without secrets that shares its id with a class of secrets.def.
bool isPlain(unsigned short id, Bytes payload)
{
    if (id != command_id::CCmdGZ_regGameServerOk)
        return false;
    CCmdGZ_regGameServerOk reply;
    return readFirst(reply, payload, payload.size());
}

bool maskPayload(unsigned short id, Bytes payload, int depth)
{
    if (id == command_id::CCmdGZ_clientToServer)
        return maskTunnel<CCmdGZ_clientToServer>(payload, depth);
    if (id == command_id::CCmdGZ_serverToClient)
        return maskTunnel<CCmdGZ_serverToClient>(payload, depth);
    const auto found = getSecrets().find(id);
    if (found == getSecrets().end())
        return false;
    if (payload.size() > kMostRead)
        return zero(payload);
    if (isPlain(id, payload))
        return false;
    // A masked field still reads.
    for (const Secret& secret : found->second)
        if (!hideField(secret, payload))
            return zero(payload);
    // What was hidden may be other bytes than those of the field.
    for (const Secret& secret : found->second)
        if (!isHidden(secret, payload))
            return zero(payload);
    return !payload.empty();
}

} // namespace

bool maskSecrets(Carried carried, Bytes packet)
{
    if (carried == Carried::kStreamFrame)
        return maskStreamFrame(packet, 0);
    if (carried == Carried::kDatagramFrame)
        return maskDatagramFrame(packet);
    const NetPacketView view = viewNetPacket(packet);
    if (view.m_Frame)
        return maskStreamFrame(packet.subspan(static_cast<size_t>(view.m_Frame - packet.data()), view.m_FrameSize), 0);
    // A command's message that is cut, or that bytes follow.
    const auto* const name = reinterpret_cast<const unsigned char*>(view.m_ClassName.data());
    return view.m_ClassName == kNetCommandName &&
           zero(packet.subspan(static_cast<size_t>(name - packet.data()) + view.m_ClassName.size()));
}

} // namespace host::inner
