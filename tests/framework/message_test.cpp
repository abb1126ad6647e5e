#include "framework/message.h"

#include "framework/buffer.h"
#include "framework/class_id.h"
#include "framework/event.h"
#include "framework/memory_stream.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>

namespace
{

using zet::Message;
using zet::MessageDispenser;
using zet::MessageHandler;
using MessageHandle = zet::Unknown::Handle_T<Message>;

// A message with one number.
class Number : public Message
{
public:
    static unsigned long getClassId_() { return zet::classIdOf(L"TestNumber"); }
    const wchar_t* getClassName() const override { return L"TestNumber"; }
    bool importFrom(zet::InputStream& stream) override
    {
        zet::Varint value;
        stream >> value;
        m_Value = static_cast<int>(value.m_Value);
        if (m_Value == 66)
            throw std::runtime_error("sixty-six");
        return m_Value != 99;
    }
    bool exportTo(zet::OutputStream& stream) const override
    {
        stream << zet::Varint{static_cast<unsigned long long>(m_Value)};
        return true;
    }

    int m_Value = 0;
};

class Derived : public Number
{
public:
    static unsigned long getClassId_() { return zet::classIdOf(L"TestDerived"); }
    const wchar_t* getClassName() const override { return L"TestDerived"; }
};

class Named : public Message
{
public:
    explicit Named(const wchar_t* name) : m_Name(name) {}
    const wchar_t* getClassName() const override { return m_Name; }
    const wchar_t* m_Name;
};

zet::Unknown* makeNumber()
{
    return new Number;
}
zet::Unknown* makePlain()
{
    return new zet::Unknown;
}

std::string written(const Message& message, bool expected = true)
{
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream out(store.get());
    EXPECT_EQ(Message::writeWhole(out, message), expected);
    std::string bytes(static_cast<size_t>(store->getSize()), '\0');
    store->read(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

MessageHandle read(const std::string& bytes)
{
    const auto store = zet::MemoryStream::createInstance();
    store->write(bytes.data(), static_cast<int>(bytes.size()));
    zet::InputStream in(store.get());
    return Message::readWhole(in);
}

TEST(ClassId, IsTheSameByNameAndByObject)
{
    // FNV-1a of no bytes and of "a".
    EXPECT_EQ(zet::classIdOf(L""), 0x811C9DC5UL);
    EXPECT_EQ(zet::classIdOf(L"a"), 0xE40C292CUL);
    EXPECT_EQ(Number().getClassId(), Number::getClassId_());
}

TEST(Message, TheBaseAddsNothingToTheForm)
{
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream out(store.get());
    Message message;
    out << message;
    EXPECT_TRUE(message.exportTo(out));
    EXPECT_EQ(store->getSize(), 0);
    zet::InputStream in(store.get());
    in >> message;
    EXPECT_TRUE(message.importFrom(in));
}

TEST(Message, AWholeOneStartsWithItsClassName)
{
    Number number;
    number.m_Value = 300;
    EXPECT_EQ(written(number), std::string("\x0ATestNumber\xAC\x02", 13));
}

TEST(Message, AWholeOneRoundTrips)
{
    const zet::RtRegistration registered(L"TestNumber", &makeNumber);
    Number number;
    number.m_Value = 300;
    const MessageHandle again = read(written(number));
    ASSERT_TRUE(again);
    EXPECT_EQ(dynamic_cast<Number&>(*again).m_Value, 300);
}

TEST(Message, EveryCutOfAWholeOneIsRefused)
{
    const zet::RtRegistration registered(L"TestNumber", &makeNumber);
    Number number;
    number.m_Value = 300;
    const std::string whole = written(number);
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(read(whole.substr(0, size))) << size;
}

TEST(Message, AnUnknownNameIsRefused)
{
    const zet::RtRegistration registered(L"TestNumber", &makeNumber);
    EXPECT_FALSE(read(std::string(1, '\0') + "\x05"));
    EXPECT_FALSE(read("\x0AOtherClass\x05"));
    EXPECT_FALSE(read("\x0A"
                      "Test Class\x05"));
    EXPECT_FALSE(read("\x0BTestNumber\n\x05"));
    // A name that is truncated.
    EXPECT_FALSE(read(std::string("\x0CTestNumber\0x\x05", 14)));
    // 129 bytes, and 2^63 of them.
    EXPECT_FALSE(read("\x81\x01" + std::string(129, 'a') + "\x05"));
    EXPECT_FALSE(read("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7FTestNumber\x05"));
    EXPECT_FALSE(read(std::string(12, '\xFF')));
}

TEST(Message, AClassOtherThanAMessageIsRefused)
{
    const zet::RtRegistration registered(L"TestPlain", &makePlain);
    EXPECT_FALSE(read("\x09TestPlain"));
}

TEST(Message, WhatItsClassRefusesOrThrowsMakesNone)
{
    const zet::RtRegistration registered(L"TestNumber", &makeNumber);
    const test::LogLines lines;
    EXPECT_TRUE(read("\x0ATestNumber\x05"));
    EXPECT_TRUE(lines.texts().empty());
    EXPECT_FALSE(read("\x0ATestNumber\x63"));
    EXPECT_TRUE(lines.texts().empty());
    EXPECT_FALSE(read("\x0ATestNumber\x42"));
    EXPECT_TRUE(lines.has(zet::Log::kError, L"Message is not read: sixty-six"));
}

TEST(Message, ANameThatCannotTravelIsNotWritten)
{
    written(Named(L""), false);
    written(Named(L"Two Words"), false);
    written(Named(L"Gr\u00FCn"), false);
    const std::wstring longest(128, L'a');
    EXPECT_EQ(written(Named(longest.c_str())).size(), 130U);
    written(Named((longest + L"a").c_str()), false);
}

TEST(Message, ASinkThatIsFullIsNotThrownAtTheCaller)
{
    class NoOutput : public zet::Output
    {
    public:
        int write(const void*, int) override { return 0; }
    };
    NoOutput full;
    zet::OutputStream out(&full);
    EXPECT_FALSE(Message::writeWhole(out, Number()));
}

// Records its calls.
struct Host
{
    void onNumber(Number* number) { m_Notes += 'n' + std::to_string(number->m_Value); }
    void onDerived(Derived* derived) { m_Notes += 'd' + std::to_string(derived->m_Value); }
    void addAnother(Number*)
    {
        m_Dispenser.addMessageHandler(MessageHandler(this, &Host::onNumber));
        m_Notes += '+';
    }
    void throwing(Number*) { throw std::runtime_error("no"); }

    MessageDispenser m_Dispenser;
    std::string m_Notes;
};

TEST(Dispenser, CallsTheHandlersOfTheClassInTheirOrder)
{
    Host host;
    Host other;
    host.m_Dispenser.addMessageHandler(MessageHandler(&host, &Host::onNumber));
    host.m_Dispenser.addMessageHandler(MessageHandler(&host, &Host::onDerived));
    host.m_Dispenser.addMessageHandler(MessageHandler(&other, &Host::onNumber));
    Number number;
    number.m_Value = 5;
    host.m_Dispenser.dispense(&number);
    EXPECT_EQ(host.m_Notes, "n5");
    EXPECT_EQ(other.m_Notes, "n5");
}

TEST(Dispenser, ADerivedObjectIsNotOneOfItsBase)
{
    Host host;
    host.m_Dispenser.addMessageHandler(MessageHandler(&host, &Host::onNumber));
    host.m_Dispenser.addMessageHandler(MessageHandler(&host, &Host::onDerived));
    Derived derived;
    host.m_Dispenser.dispense(&derived);
    EXPECT_EQ(host.m_Notes, "d0");
}

TEST(Dispenser, AHandlerMayAddHandlersWhichSeeTheNextObject)
{
    Host host;
    host.m_Dispenser.addMessageHandler(MessageHandler(&host, &Host::addAnother));
    Number number;
    host.m_Dispenser.dispense(&number);
    EXPECT_EQ(host.m_Notes, "+");
    host.m_Dispenser.dispense(&number);
    EXPECT_EQ(host.m_Notes, "++n0");
}

TEST(Dispenser, WhatAHandlerThrowsGoesToTheCaller)
{
    Host host;
    host.m_Dispenser.addMessageHandler(MessageHandler(&host, &Host::throwing));
    host.m_Dispenser.addMessageHandler(MessageHandler(&host, &Host::onNumber));
    Number number;
    EXPECT_THROW(host.m_Dispenser.dispense(&number), std::runtime_error);
    EXPECT_EQ(host.m_Notes, "");
}

TEST(Dispenser, AVirtualMethodIsCalledAsSuch)
{
    class Done : public zet::Event
    {
    public:
        static unsigned long getClassId_() { return zet::classIdOf(L"TestDone"); }
        const wchar_t* getClassName() const override { return L"TestDone"; }
    };
    struct Base
    {
        virtual ~Base() = default;
        virtual void onDone(const Done*) { m_Notes += 'b'; }
        std::string m_Notes;
    };
    struct Over : Base
    {
        void onDone(const Done*) override { m_Notes += 'o'; }
    };
    Over over;
    zet::EventDispenser events;
    events.addEventHandler(zet::EventHandler(&over, &Base::onDone));
    const Done done;
    events.dispense(&done);
    EXPECT_EQ(over.m_Notes, "o");
}

} // namespace
