// The log lines about ends of connections and about refused ones.
#pragma once

#include "net/end_cause.h"

namespace zet::inner
{

using PeerTextOf = String_T<wchar_t> (*)(const void* object);

// The PeerTextOf of a Connection, whose address object is.
template <class Connection>
String_T<wchar_t> peerNameOf(const void* object)
{
    return static_cast<const Connection*>(object)->getPeerName();
}

// Each thread logs 32 lines at once, then four per second, of ordinary ends as messages and apart from them of all
// others as warnings. The next line says how many were omitted. The pattern's two texts are the peer and the cause.
// peer(object) is called only if a line is logged. Without memory the line is lost.
void logEnd(const wchar_t* pattern, EndCause cause, PeerTextOf peer, const void* object) noexcept;

// The same for an end whose reason is not the text of its cause: a warning.
void logFault(const wchar_t* pattern, const String_T<wchar_t>& reason, PeerTextOf peer, const void* object) noexcept;

inline constexpr const wchar_t* kEndedLine = L"Connection with %s ended: %s";
inline constexpr const wchar_t* kConnectLine = L"Connect to %s failed: %s";
inline constexpr const wchar_t* kRefusedLine = L"Connection of %s refused: %s";

// An error that only this side causes, such as a listen() that fails; not bounded. No line for kNone.
void logFailure(const wchar_t* what, const String_T<wchar_t>& where, EndCause cause) noexcept;

} // namespace zet::inner
