// Commands as messages of a net session.
//
//   Msg_NetCommand   flags:8  [from:16 bytes]  [Varint count, count * 16 bytes]  Varint size, stream frame
//   flags            bit 0: the from address follows; bit 1: the target list follows
#pragma once

#include "framework/buffer.h"
#include "framework/member_table.h"
#include "framework/message.h"
#include "framework/shared_ptr.h"

#include <list>
#include <vector>

class CCmdPackager;

// A message with addresses. Its members have the names of their properties.
class COMMONGROUND_API NetMessage : public zet::Message
{
public:
    // A message without addresses; as a handle, or as a pointer that the caller puts into one.
    static zet::Unknown::Handle_T<NetMessage> createInstance();
    static zet::Message* createMessage_();
    // The name of the class, by which a peer creates it, and its number.
    static const wchar_t* getClassName_();
    static unsigned long getClassId_();
    // Fills the attribute table once; called when the library is loaded. Any thread.
    static void registerProperty_();

    zet::Unknown* rtCreateInstance() const override;
    zet::Unknown* clone() const override;
    const wchar_t* getClassName() const override;
    unsigned long getClassId() const override;
    const wchar_t* getPropertyType() const override;
    const zet::PropertyAttributes& getPropertyAttributes() const override;
    const wchar_t* getClassTimestamp() const override;
    // The stream form. False and logged if the stream is cut; values read so far stay.
    bool importFrom(zet::InputStream& stream) override;
    bool exportTo(zet::OutputStream& stream) const override;

    // All zero means none.
    zet::Uuid fromAddress;
    std::vector<zet::Uuid> targetAddress;
};

// NetMessage's part of the stream form. A value that is not in the stream is cleared by reading. A short write or read
// throws zet::Exception.
COMMONGROUND_API zet::OutputStream& operator<<(zet::OutputStream& stream, const NetMessage& message);
COMMONGROUND_API zet::InputStream& operator>>(zet::InputStream& stream, NetMessage& message);

// One command.
class COMMONGROUND_API Msg_NetCommand : public NetMessage
{
public:
    // A message without a command; as a handle, or as a pointer that the caller puts into one.
    static zet::Unknown::Handle_T<Msg_NetCommand> createInstance();
    static zet::Message* createMessage_();
    // The name of the class, by which a peer creates it, and its number.
    static const wchar_t* getClassName_();
    static unsigned long getClassId_();
    // Fills the attribute table once; called when the library is loaded. Any thread.
    static void registerProperty_();

    zet::Unknown* rtCreateInstance() const override;
    zet::Unknown* clone() const override;
    const wchar_t* getClassName() const override;
    unsigned long getClassId() const override;
    const wchar_t* getPropertyType() const override;
    const zet::PropertyAttributes& getPropertyAttributes() const override;
    const wchar_t* getClassTimestamp() const override;
    bool importFrom(zet::InputStream& stream) override;
    bool exportTo(zet::OutputStream& stream) const override;

    // One stream frame, header included.
    zet::Buffer data;

private:
    // The members that this class adds to the stream form.
    static const zet::Member_T<Msg_NetCommand> _mtbl[1];
};

// The types registered for fields: "NetMessageArray", "NetMessageList", "Msg_NetCommandArray",
// "Msg_NetCommandList".
using NetMessageArray = std::vector<zet::Unknown::Handle_T<NetMessage>>;
using NetMessageList = std::list<zet::Unknown::Handle_T<NetMessage>>;
using Msg_NetCommandArray = std::vector<zet::Unknown::Handle_T<Msg_NetCommand>>;
using Msg_NetCommandList = std::list<zet::Unknown::Handle_T<Msg_NetCommand>>;

// The packager's stream frame as a message without addresses. Null for null; null and logged if the packager does not
// write its frame.
COMMONGROUND_API zet::Unknown::Handle_T<Msg_NetCommand> convertToNetMessage(const CCmdPackager* packager);
// The reverse. Null for null; null and logged for a cut frame.
COMMONGROUND_API zet::SharedPtr<CCmdPackager> convertToNetCommand(Msg_NetCommand* message);
