#include "host/pack_router.h"

#include "framework/json.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/platform/class_name.h"

#include <algorithm>

namespace host::inner
{

using zet::platform::getClassName;

zet::String_T<wchar_t> PackTable::getEnvelopeNames() const
{
    zet::String_T<wchar_t> names;
    for (const std::type_info* const envelope : m_Envelopes)
    {
        if (names.getLength() > 0)
            names += L", ";
        names += getClassName(*envelope);
    }
    return names;
}

bool PackTable::refuse(const zet::String_T<wchar_t>& reason)
{
    m_IsSound = false;
    zet::Log::error(L"PackRouter of %s: %s", getEnvelopeNames(), reason);
    return false;
}

bool PackTable::refuseOther(int number, int own, const std::type_info& message)
{
    zet::String_T<wchar_t> reason;
    reason.format(L"%s has the number %d of its own, and cannot have %d", getClassName(message), own, number);
    return refuse(reason);
}

bool PackTable::refuseUnnumbered(const std::type_info& message)
{
    zet::String_T<wchar_t> reason;
    reason.format(L"%s has a handler but no number", getClassName(message));
    return refuse(reason);
}

bool PackTable::add(int number, int highest, const std::type_info& message, unsigned int carriers)
{
    zet::String_T<wchar_t> reason;
    const zet::String_T<wchar_t> name = getClassName(message);
    if (m_IsClosed)
    {
        reason.format(L"%s comes after install()", name);
        return refuse(reason);
    }
    if (number == 0 || number > highest || (highest < std::numeric_limits<int>::max() && number < 0))
    {
        reason.format(L"%s has the number %d, which is not a valid m_PackType", name, number);
        return refuse(reason);
    }
    for (const Row& row : m_Rows)
    {
        if (row.m_Number == number && *row.m_Message == message)
            return true;
        if (row.m_Number == number && (!m_IsByPair || (row.m_Carriers & carriers) != 0))
            reason.format(L"%s has the number %d of %s", name, number, getClassName(*row.m_Message));
        else if (*row.m_Message == message)
            reason.format(L"%s has two numbers, %d and %d", name, row.m_Number, number);
        else
            continue;
        return refuse(reason);
    }
    const auto place = std::upper_bound(m_Rows.begin(), m_Rows.end(), number,
                                        [](int value, const Row& row) { return value < row.m_Number; });
    m_Rows.insert(place, Row{number, &message, carriers});
    return true;
}

bool PackTable::handle(const std::type_info& message)
{
    const auto row =
        std::find_if(m_Rows.begin(), m_Rows.end(), [&message](const Row& each) { return *each.m_Message == message; });
    if (row == m_Rows.end() || row->m_IsHandled)
    {
        zet::String_T<wchar_t> reason;
        reason.format(L"%s has two handlers", getClassName(message));
        return refuse(reason);
    }
    row->m_IsHandled = true;
    return true;
}

bool PackTable::close()
{
    if (m_IsClosed)
        return refuse(L"install() was called before");
    m_IsClosed = true;
    if (!m_IsSound)
        return refuse(L"not installed, for the errors above");
    if (std::none_of(m_Rows.begin(), m_Rows.end(), [](const Row& row) { return row.m_IsHandled; }))
        return refuse(L"not installed, since no message has a handler");
    return true;
}

int PackTable::getNumber(const std::type_info& message) const
{
    for (const Row& row : m_Rows)
        if (*row.m_Message == message)
            return row.m_Number;
    return 0;
}

bool PackTable::reportUnnumbered(const std::type_info& message) const
{
    zet::Log::error(L"PackRouter of %s: %s is not sent, since it has no number", getEnvelopeNames(),
                    getClassName(message));
    return false;
}

zet::String_T<wchar_t> PackTable::toJson() const
{
    const auto namesOf = [this](unsigned int bits)
    {
        zet::JsonValue names(zet::JsonValue::kArray);
        for (size_t i = 0; i < m_Envelopes.size(); ++i)
            if (bits >> i & 1)
                names[names.size()] = getClassName(*m_Envelopes[i]);
        return names;
    };
    zet::JsonValue table(zet::JsonValue::kObject);
    table[L"envelopes"] = namesOf(~0U);
    zet::JsonValue& messages = table[L"messages"] = zet::JsonValue(zet::JsonValue::kArray);
    for (const Row& row : m_Rows)
    {
        zet::JsonValue& message = messages[messages.size()];
        message[L"number"] = row.m_Number;
        message[L"message"] = getClassName(*row.m_Message);
        message[L"envelopes"] = namesOf(row.m_Carriers);
        message[L"handled"] = row.m_IsHandled;
    }
    return zet::Json::convertToString(table, false);
}

void reportUnknownPack(const std::type_info& envelope, int number, CCommandSocket& socket)
{
    if (zet::PeerLog::takesLine())
        zet::Log::error(L"%s dropped: no message with the number %d has a handler (%s)", getClassName(envelope), number,
                        socket.getPeerName());
}

void reportUnreadPack(const std::type_info& message, int number, int size, CCommandSocket& socket)
{
    if (zet::PeerLog::takesLine())
        zet::Log::error(L"%s dropped: number %d, it does not fit %d bytes (%s)", getClassName(message), number, size,
                        socket.getPeerName());
}

void reportLongPack(const std::type_info& message, int number, int left, int size, CCommandSocket& socket)
{
    if (zet::PeerLog::takesLine())
        zet::Log::warning(L"%s: number %d, %d of %d bytes are left over (%s)", getClassName(message), number, left,
                          size, socket.getPeerName());
}

bool reportUnwrittenPack(const std::type_info& message)
{
    zet::Log::error(L"%s is not sent: it does not fit its envelope", getClassName(message));
    return false;
}

bool reportOtherPair(const std::type_info& message, int number, int request)
{
    zet::Log::error(L"%s is not sent: it has the number %d, and its request %d", getClassName(message), number,
                    request);
    return false;
}

} // namespace host::inner
