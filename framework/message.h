// Messages: the objects that sessions exchange.
#pragma once

#include "framework/dispenser.h"
#include "framework/property.h"

namespace zet
{

// The base of all messages. It has no fields, so it adds nothing to the stream form of a message.
// A message class has getClassName_() and getClassId_(), and registers in Unknown::RtFactory under its name.
class COMMONGROUND_API Message : public Property
{
public:
    const wchar_t* getClassName() const override { return L"zet::Message"; }
    bool importFrom(InputStream& stream) override;
    bool exportTo(OutputStream& stream) const override;

    // The maximum length in bytes of a message's class name, which consists of printable ASCII without blanks.
    static constexpr int kMaxClassName = 128;

    // Writes a whole message: the class name as a Varint count and bytes, then the message's own form. False if the
    // name is invalid or the message fails to write itself; a part may have been written then.
    static bool writeWhole(OutputStream& stream, const Message& message);
    // Reads the next whole message, or returns null if the bytes are not a valid message: an invalid name, a class that
    // is not a registered message class, or a form that the class refuses. Throws nothing; an exception of the class is
    // logged.
    static Unknown::Handle_T<Message> readWhole(InputStream& stream);
};

// The message base writes and reads nothing.
inline OutputStream& operator<<(OutputStream& stream, const Message&)
{
    return stream;
}
inline InputStream& operator>>(InputStream& stream, Message&)
{
    return stream;
}

// A handler for messages of one class: MessageHandler(this, &Host::onGreeting) for
// void Host::onGreeting(Greeting*).
using MessageHandler = Handler_T<Message>;

// Passes messages to their subscribers, as Dispenser_T says.
class MessageDispenser : public Dispenser_T<Message>
{
public:
    // Subscribes a handler for as long as the dispenser exists; the owner of its method must live as long.
    void addMessageHandler(const MessageHandler& handler) { add(handler); }
};

} // namespace zet
