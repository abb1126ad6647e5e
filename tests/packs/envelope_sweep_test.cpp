// Every feature message end to end: into its envelope, through a frame and an analyser, and out again.
#include "dispatch/analyser.h"
#include "framework/memory_stream.h"
#include "packaging/command_head.h"
#include "tests/support/argument.h"
#include "tests/support/payload_maker.h"
#include "tools/object_json.h"
#include "tools/reading.h"
#include "tools/schema_reader.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{

using tools::ClassInfo;
using tools::Family;
using tools::Form;

struct Delivery
{
    const ClassInfo* m_Envelope;
    int m_Count = 0;
    std::string m_Payload = {};
};

void onEnvelope(CCmdHead* command, unsigned long arg1, unsigned long)
{
    Delivery& delivery = test::objectOf<Delivery>(arg1);
    ++delivery.m_Count;
    const auto fields = tools::objectJson(delivery.m_Envelope->m_Wire(), command);
    ASSERT_TRUE(tools::bytesOfHex(fields["m_PackData"].get<std::string>(), delivery.m_Payload));
}

// The bytes of a default-constructed envelope with a payload inserted at its size.
std::string envelopeBytes(const ClassInfo& envelope, const std::string& payload)
{
    bool write = false;
    std::string bytes = tools::writeObject(envelope, Form::kCmd, envelope.make().get(), write);
    EXPECT_TRUE(write);
    for (const tools::ExplainedValue& value : tools::explain(envelope.m_Wire(), bytes).m_Values)
    {
        if (value.m_Field != "m_PackData(size)")
            continue;
        for (size_t i = 0; i < 4; ++i)
            bytes[value.m_Offset + i] = static_cast<char>(payload.size() >> 8 * (3 - i));
        return bytes.insert(value.m_Offset + 4, payload);
    }
    ADD_FAILURE() << envelope.m_Name << " has no payload";
    return bytes;
}

Form carriedForm(const ClassInfo& message, const ClassInfo& envelope)
{
    // A class with both forms uses the packager of its envelope: the command packager in all but a few.
    return tools::hasForm(message, Form::kCmd) && !std::string_view(envelope.m_Name).starts_with("CCmdVoidData")
               ? Form::kCmd
               : Form::kData;
}

void expectArrives(const ClassInfo& message, const char* envelopeName, const std::string& payload)
{
    SCOPED_TRACE(envelopeName);
    const ClassInfo* const envelope = tools::findClass(envelopeName);
    ASSERT_TRUE(envelope);

    const std::string bytes = envelopeBytes(*envelope, payload);
    CCmdPackager sent;
    sent.SetCmdID(envelope->m_Id);
    ASSERT_TRUE(sent.Write(bytes.data(), static_cast<int>(bytes.size())));
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream out(store.get());
    ASSERT_TRUE(sent.Send(out));
    zet::InputStream in(store.get());
    CCmdPackager received;
    ASSERT_TRUE(received.Receive(in));

    const auto analyser = std::make_unique<CCmdAnalyser>();
    analyser->Install(envelope->m_Id, envelope->m_Process, onEnvelope);
    Delivery delivery{envelope};
    analyser->Analyse(received, test::argumentOf(&delivery), 0);
    ASSERT_EQ(delivery.m_Count, 1);

    const Form form = carriedForm(message, *envelope);
    const tools::Reading direct = tools::readBytes(message, form, payload);
    const tools::Reading carried = tools::readBytes(message, form, delivery.m_Payload);
    EXPECT_TRUE(carried.m_Read);
    EXPECT_EQ(carried.m_Consumed, static_cast<int>(payload.size()));
    EXPECT_EQ(tools::objectJson(message.m_Wire(), carried.m_Object.get()).dump(),
              tools::objectJson(message.m_Wire(), direct.m_Object.get()).dump());
}

TEST(EnvelopeSweep, EveryMessageArrivesInItsEnvelope)
{
    int messages = 0;
    unsigned seed = 500;
    for (const ClassInfo& message : tools::classTable())
    {
        if (message.m_Family != Family::kMessage)
            continue;
        SCOPED_TRACE(message.m_Name);
        ++messages;
        const std::string payload = test::PayloadMaker(++seed).make(message.m_Wire()).m_Bytes;
        expectArrives(message, message.m_Base, payload);
        if (*message.m_OtherEnvelope)
            expectArrives(message, message.m_OtherEnvelope, payload);
    }
    EXPECT_GT(messages, 0);
}

} // namespace
