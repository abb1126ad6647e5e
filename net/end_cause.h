// Why a connection ended, or why a connection or a port was not made.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

namespace zet
{

// A code, a number whose meaning depends on the code, and a text for people. A plain value of four bytes. getCount()
// may be called from any thread.
struct COMMONGROUND_API EndCause
{
    enum Code : unsigned char
    {
        // The connection has not ended, or there was none.
        kNone = 0,
        // close() was called, or the server of the connection was closed.
        kClosedHere,
        // detach() has returned the handle to the host.
        kDetached,
        // The host has ended it by closeFor(); m_Detail is the host's number.
        kHost,
        // The peer has closed it, and all that it sent was received.
        kClosedByPeer,
        // The peer has ended it before everything was received or confirmed. m_Detail 0.
        kCutOff,
        // Nothing listens there, or the peer refuses more connections.
        kRefused,
        kReset,
        // m_Detail is a Time.
        kTimedOut,
        // No route leads to the address.
        kUnreachable,
        // The host name has no address.
        kNotResolved,
        // The text is not an address, a name or a port.
        kBadAddress,
        // The peer's certificate was refused. m_Detail is a Rule.
        kCertificate,
        // TLS failed. m_Detail is the number of the alert that the peer sent; 0 if this side ended it.
        kTls,
        // The TLS context lacks a certificate, a key or authorities; the log names it.
        kTlsContext,
        // The proxy refused. m_Detail is its answer, the second byte of its last reply.
        kProxy,
        // The peer has announced a packet or a message above the limit.
        kPacketTooLong,
        // The peer's bytes are not what the protocol demands.
        kMalformed,
        // More output than the limit of the connection, or than its share of the port's limit.
        kOutputFull,
        // More unhandled input than the share of the port's limit.
        kInputFull,
        // permission() refuses the address.
        kFiltered,
        // A limit on the number of connections is reached.
        kTooMany,
        // The process or the system has no handle left.
        kNoHandle,
        kNoMemory,
        // Another socket has the port.
        kPortInUse,
        // The address is not one of this machine.
        kForeignAddress,
        // The system does not permit it.
        kNotPermitted,
        // QUIC failed. m_Detail is the transport error code, 0xFFFF for a larger one.
        kQuic,
        // An override or a handler has thrown, or an override has refused; the log has the exception.
        kThrown,
        // The object holds a connection or a port already.
        kHeld,
        // The object that is needed is not in a System, or has no port.
        kNotStarted,
        // The library does not have it, by its build or without its module, or the system does not.
        kUnavailable,
        // Anything else. m_Detail is the system's error number, or 0.
        kSystem,
        // The peer has sent more packets or bytes per second than the limits allow.
        kRateLimited
    };
    static constexpr int kCodes = kRateLimited + 1;

    // What was waited for.
    enum Time : unsigned short
    {
        // An answer of the peer, as the system or the settings demand it.
        kAnswer,
        kHandshake,
        // Input, while established.
        kInput,
        // The greeting of a net session.
        kGreeting,
        // The confirmation of the output after a close().
        kLinger
    };

    // What a certificate violates.
    enum Rule : unsigned short
    {
        // Something that is not listed here; the log has the text.
        kOtherRule,
        // No trusted authority has signed it.
        kUntrusted,
        kExpired,
        kNotYetValid,
        kRevoked,
        // It is for another host.
        kWrongName,
        // It contains a host name only in its subject.
        kNoName,
        // It is not for this side of a connection.
        kWrongPurpose,
        // Its key or its signature is too weak.
        kWeak,
        // The peer has shown none.
        kMissing,
        // The list of revoked certificates is out of date.
        kOldRevocations
    };

    // Whether there is a cause.
    explicit operator bool() const { return m_Code != kNone; }
    friend bool operator==(const EndCause& a, const EndCause& b)
    {
        return a.m_Code == b.m_Code && a.m_Detail == b.m_Detail;
    }

    // One short text in English, such as "refused" or "certificate: expired".
    String_T<wchar_t> getText() const;
    // Whether the end is one that a host or a peer intends: closed, detached, or ended by the host.
    bool isOrdinary() const { return m_Code >= kClosedHere && m_Code <= kClosedByPeer; }

    // The code as a name for statistics, such as "closed_by_peer"; "unknown" for a number that is not a code.
    static const char* getLabel(Code code);
    // How many connections of this process have ended by this cause, and connects and listens failed by it, so far.
    static unsigned long long getCount(Code code);

    Code m_Code = kNone;
    unsigned short m_Detail = 0;
};

} // namespace zet
