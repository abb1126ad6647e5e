// The bases of all commands: what every command sends besides its own fields.
//
//   CCmdHead                  version:16 = 2, client index:16
//   CCmdPlatform, CCmdSystem  the same, client address:16 bytes, account name:text
//
// The addresses of a command are in its frame, not in its payload.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "framework/uuid.h"

#include <cstdio>

class CCmdPackager;
class CCommandSocket;
namespace wire
{
struct Schema;
}

// A plain value for one send or one dispatch. Only Send uses a socket. Not locked.
class COMMONGROUND_API CCmdHead
{
public:
    // The only version that is written, and the only one that is read.
    static constexpr unsigned short kVersion = 2;

    // A command with this id and without addresses.
    explicit CCmdHead(unsigned short id) : m_ID(id) {}
    CCmdHead(const CCmdHead&) = default;
    CCmdHead& operator=(const CCmdHead&) = default;

    virtual ~CCmdHead() = default;
    // A command without an account ignores what these two are given.
    virtual void SetClientAddress(const zet::Uuid& address);
    virtual void SetAccountName(const zet::String_T<wchar_t>& name);
    // All zero and empty for a command without an account.
    virtual zet::Uuid GetClientAddress();
    virtual zet::String_T<wchar_t> GetAccountName();
    // Sets the packager's id and addresses and appends the payload. False if a field does not fit; what was
    // written by then stays.
    virtual bool Write(CCmdPackager* pk) const;
    // Reads addresses and payload. False on another id, another version or a short field; the fields read by then
    // stay. A client index that is cut off keeps its value and is not an error.
    virtual bool Read(CCmdPackager* pk);
    // Prints the fields for a trace; the base prints nothing.
    virtual void OutDebug(FILE* out) const;

    // The id of the class.
    unsigned short GetID() const { return m_ID; }
    // The sender's client index; 0 at first. Sent with the command.
    unsigned short GetClientIndex() const { return m_ClientIndex; }
    void SetClientIndex(unsigned short index) { m_ClientIndex = index; }
    // The addresses of the frame: sender and target; all zero for none. Read() sets them from the frame.
    const zet::Uuid& GetFromAddress() const { return m_FromAddress; }
    const zet::Uuid& GetTargetAddress() const { return m_TargetAddress; }
    void SetFromAddress(const zet::Uuid& from) { m_FromAddress = from; }
    void SetTargetAddress(const zet::Uuid& target) { m_TargetAddress = target; }
    void SetAddress(const zet::Uuid& from, const zet::Uuid& target)
    {
        m_FromAddress = from;
        m_TargetAddress = target;
    }
    void GetAddress(zet::Uuid& from, zet::Uuid& target) const
    {
        from = m_FromAddress;
        target = m_TargetAddress;
    }

    // Sends the command; false for a null socket, else the socket's result. Only on the socket's thread.
    bool Send(CCommandSocket* socket) const;

    // The layout, for the project's own tools.
    static const wire::Schema& Wire();

    unsigned short m_HeadVersion = kVersion;
    unsigned short m_ID;
    unsigned short m_ClientIndex = 0;
    zet::Uuid m_FromAddress;
    zet::Uuid m_TargetAddress;
};

// The head of the commands between clients and servers.
class COMMONGROUND_API CCmdPlatform : public CCmdHead
{
public:
    // For derived classes.
    explicit CCmdPlatform(unsigned short id) : CCmdHead(id) {}
    // Copied when moved: a command that is moved from keeps its head, but not what its own class moves.
    CCmdPlatform(const CCmdPlatform&) = default;
    CCmdPlatform& operator=(const CCmdPlatform&) = default;

    void SetClientAddress(const zet::Uuid& address) override { m_ClientAddress = address; }
    void SetAccountName(const zet::String_T<wchar_t>& name) override { m_AccountName = name; }
    zet::Uuid GetClientAddress() override { return m_ClientAddress; }
    zet::String_T<wchar_t> GetAccountName() override { return m_AccountName; }
    bool Write(CCmdPackager* pk) const override;
    bool Read(CCmdPackager* pk) override;

    // The layout, for the project's own tools.
    static const wire::Schema& Wire();

    // The client on whose behalf the command is sent.
    zet::Uuid m_ClientAddress;
    zet::String_T<wchar_t> m_AccountName;
};

// The head of the commands between servers: the same fields as CCmdPlatform, a family of its own.
class COMMONGROUND_API CCmdSystem : public CCmdHead
{
public:
    // For derived classes.
    explicit CCmdSystem(unsigned short id) : CCmdHead(id) {}
    // Copied when moved: a command that is moved from keeps its head, but not what its own class moves.
    CCmdSystem(const CCmdSystem&) = default;
    CCmdSystem& operator=(const CCmdSystem&) = default;

    void SetClientAddress(const zet::Uuid& address) override { m_ClientAddress = address; }
    void SetAccountName(const zet::String_T<wchar_t>& name) override { m_AccountName = name; }
    zet::Uuid GetClientAddress() override { return m_ClientAddress; }
    zet::String_T<wchar_t> GetAccountName() override { return m_AccountName; }
    bool Write(CCmdPackager* pk) const override;
    bool Read(CCmdPackager* pk) override;

    // The layout, for the project's own tools.
    static const wire::Schema& Wire();

    zet::Uuid m_ClientAddress;
    zet::String_T<wchar_t> m_AccountName;
};
