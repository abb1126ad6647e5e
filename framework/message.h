// Messages: what travels between sessions.
#pragma once

#include "framework/dispenser.h"
#include "framework/property.h"

namespace zet
{

// The base of all messages. It has no fields of its own, so it adds nothing to the stream form of a message.
// A class of messages has getClassName_() and getClassId_(), and enters Unknown::RtFactory under its name.
class COMMONGROUND_API Message : public Property
{
public:
    const wchar_t* getClassName() const override { return L"zet::Message"; }
    bool importFrom(InputStream& stream) override;
    bool exportTo(OutputStream& stream) const override;

    // Bytes that the class name of a message has at most. It is of printable ASCII without blanks.
    static constexpr int kMaxClassName = 128;

    // A whole message: the class name as a Varint count and its bytes, then the message's own form. False where the
    // name is none or the message does not write itself; part of it is written then.
    static bool writeWhole(OutputStream& stream, const Message& message);
    // The next whole message of a stream, or null where its bytes are none: no name, no registered class of messages,
    // or a form that the class refuses. Nothing is thrown, and the log is told what the class had to say.
    static Unknown::Handle_T<Message> readWhole(InputStream& stream);
};

// What the message base writes, and reads: nothing.
inline OutputStream& operator<<(OutputStream& stream, const Message&)
{
    return stream;
}
inline InputStream& operator>>(InputStream& stream, Message&)
{
    return stream;
}

// A method that gets the messages of one class: MessageHandler(this, &Host::onGreeting) for
// void Host::onGreeting(Greeting*).
using MessageHandler = Handler_T<Message>;

class MessageDispenser : public Dispenser_T<Message>
{
public:
    void addMessageHandler(const MessageHandler& handler) { add(handler); }
};

} // namespace zet
