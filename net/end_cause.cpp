#include "net/end_cause.h"

#include "framework/format.h"
#include "framework/string_helper.h"
#include "net/door/door.h"
#include "net/inner/end_counts.h"

namespace zet
{

namespace
{

struct Entry
{
    const char* m_Label;
    const wchar_t* m_Text;
};

// By code. A text with %d gets the detail.
constexpr Entry kEntries[] = {
    {"none", L"it has not ended"},
    {"closed_here", L"closed here"},
    {"detached", L"its handle was detached"},
    {"host", L"ended by the host (reason %d)"},
    {"closed_by_peer", L"closed by the peer"},
    {"cut_off", L"cut off by the peer before its end"},
    {"refused", L"refused"},
    {"reset", L"reset"},
    {"timed_out", L"timed out"},
    {"unreachable", L"the address cannot be reached"},
    {"not_resolved", L"the host name has no address"},
    {"bad_address", L"not a valid address or port"},
    {"certificate", L"certificate"},
    {"tls", L"TLS failed"},
    {"tls_context", L"the TLS context lacks what this side needs"},
    {"proxy", L"the proxy answered %d"},
    {"packet_too_long", L"the peer announced a packet above the limit"},
    {"malformed", L"the peer sent malformed input"},
    {"output_full", L"its output is at the limit"},
    {"input_full", L"its unhandled input is at the limit"},
    {"filtered", L"filtered"},
    {"too_many", L"too many connections"},
    {"no_handle", L"no handle left"},
    {"no_memory", L"no memory left"},
    {"port_in_use", L"the port is in use"},
    {"foreign_address", L"not an address of this machine"},
    {"not_permitted", L"not permitted by the system"},
    {"quic", L"QUIC failed with error %d"},
    {"thrown", L"ended by an exception or an override"},
    {"held", L"a connection or port is held already"},
    {"not_started", L"not in a System, or without a port"},
    {"unavailable", L"this library does not have it"},
    {"system", L"the system reports an error"},
    {"rate_limited", L"more packets or bytes per second than the limit"},
};
static_assert(sizeof kEntries / sizeof *kEntries == EndCause::kCodes);

constexpr const wchar_t* kTimes[] = {L"no answer", L"the handshake took too long", L"no input", L"no greeting",
                                     L"the output was not confirmed"};

constexpr const wchar_t* kRules[] = {L"refused",
                                     L"not signed by a trusted authority",
                                     L"expired",
                                     L"not yet valid",
                                     L"revoked",
                                     L"for another host",
                                     L"without a host",
                                     L"for another purpose",
                                     L"too weak",
                                     L"not shown",
                                     L"the list of revoked ones is out of date"};

template <size_t Count>
const wchar_t* pick(const wchar_t* const (&texts)[Count], unsigned short at)
{
    return texts[at < Count ? at : 0];
}

inner::EndCounts& processCounts()
{
    static inner::EndCounts counts;
    return counts;
}

} // namespace

String_T<wchar_t> EndCause::getText() const
{
    const wchar_t* const text = kEntries[m_Code < kCodes ? m_Code : kSystem].m_Text;
    switch (m_Code)
    {
    case kTimedOut:
        return formatText(L"%s (%s)", text, pick(kTimes, m_Detail));
    case kCertificate:
        return formatText(L"%s: %s", text, pick(kRules, m_Detail));
    case kTls:
        return m_Detail > 0 ? formatText(L"%s (alert %d of the peer)", text, m_Detail) : String_T<wchar_t>(text);
    case kSystem:
        if (m_Detail > 0)
            return formatText(
                L"%s: %s", text,
                StringHelper::utf8ToWide(inner::Door::Fault{inner::Door::Fault::kOther, m_Detail}.getText().c_str()));
        return text;
    case kHost:
    case kProxy:
    case kQuic:
        return formatText(text, m_Detail);
    default:
        return text;
    }
}

const char* EndCause::getLabel(Code code)
{
    return code < kCodes ? kEntries[code].m_Label : "unknown";
}

unsigned long long EndCause::getCount(Code code)
{
    return processCounts().get(code);
}

namespace inner
{

void countEnd(EndCause cause)
{
    processCounts().add(cause);
}

EndCause causeOf(const Door::Fault& fault)
{
    const auto code = static_cast<unsigned short>(fault.m_Code);
    switch (fault.m_Reason)
    {
    case Door::Fault::kNone:
    case Door::Fault::kNotNow:
        break;
    case Door::Fault::kExhausted:
        return {EndCause::kNoHandle, code};
    case Door::Fault::kNoAddress:
        return {EndCause::kForeignAddress, code};
    case Door::Fault::kRefused:
        return {EndCause::kRefused, 0};
    case Door::Fault::kReset:
        return {EndCause::kReset, 0};
    case Door::Fault::kTimedOut:
        return {EndCause::kTimedOut, EndCause::kAnswer};
    case Door::Fault::kUnreachable:
        return {EndCause::kUnreachable, 0};
    case Door::Fault::kInUse:
        return {EndCause::kPortInUse, 0};
    case Door::Fault::kNotPermitted:
        return {EndCause::kNotPermitted, 0};
    case Door::Fault::kNotSegmented:
    case Door::Fault::kOther:
        return {EndCause::kSystem, code};
    }
    return {};
}

EndCause connectCauseOf(const Door::Fault& fault)
{
    // This machine has no address of the peer's family, or none that could reach it.
    return fault.m_Reason == Door::Fault::kNoAddress ? EndCause{EndCause::kUnreachable, 0} : causeOf(fault);
}

} // namespace inner

} // namespace zet
