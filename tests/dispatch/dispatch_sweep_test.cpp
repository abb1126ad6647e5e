// Every command end to end: written, framed, received, dispatched by both analysers.
#include "dispatch/analyser.h"
#include "dispatch/analyser_socket.h"
#include "framework/memory_stream.h"
#include "packaging/command_head.h"
#include "tests/support/argument.h"
#include "tests/support/log_lines.h"
#include "tests/support/payload_maker.h"
#include "tools/object_json.h"
#include "tools/reading.h"
#include "transport/command_socket.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

namespace
{

using tools::ClassInfo;
using tools::Family;

// The command that a handler received, as JSON; the first argument identifies the class.
struct Arrived
{
    const ClassInfo* m_Info;
    int m_Count = 0;
    std::string m_Fields = {};
};

void note(CCmdHead* command, unsigned long arg)
{
    Arrived& arrived = test::objectOf<Arrived>(arg);
    ++arrived.m_Count;
    // Every command has a single base, its head, so the head's address is the command's.
    arrived.m_Fields = tools::objectJson(arrived.m_Info->m_Wire(), command).dump();
}

void onCommand(CCmdHead* command, unsigned long arg1, unsigned long)
{
    note(command, arg1);
}

void onSocketCommand(CCommandSocket*, CCmdHead* command, unsigned long arg1, unsigned long)
{
    note(command, arg1);
}

template <class Check>
void forEveryCommand(Check check)
{
    for (const ClassInfo& info : tools::classTable())
    {
        if (info.m_Family != Family::kCommand)
            continue;
        SCOPED_TRACE(info.m_Name);
        check(info);
    }
}

std::string defaultPayload(const ClassInfo& info, std::string& fields)
{
    const std::shared_ptr<void> object = info.make();
    fields = tools::objectJson(info.m_Wire(), object.get()).dump();
    bool write = false;
    const std::string bytes = tools::writeObject(info, tools::Form::kCmd, object.get(), write);
    EXPECT_TRUE(write);
    return bytes;
}

void frame(CCmdPackager& pk, const ClassInfo& info, const std::string& payload)
{
    pk.SetCmdID(info.m_Id);
    ASSERT_TRUE(pk.Write(payload.data(), static_cast<int>(payload.size())));
}

TEST(DispatchSweep, DefaultObjectsArriveEqualThroughTheDatagramAnalyser)
{
    forEveryCommand(
        [](const ClassInfo& info)
        {
            std::string fields;
            CCmdPackager pk;
            frame(pk, info, defaultPayload(info, fields));
            std::string datagram(static_cast<size_t>(pk.Pack(nullptr, 0)), '\0');
            pk.Pack(datagram.data(), static_cast<int>(datagram.size()));

            const auto analyser = std::make_unique<CCmdAnalyser>();
            analyser->Install(info.m_Id, info.m_Process, onCommand);
            Arrived arrived{&info};
            analyser->Analyse(datagram.data(), static_cast<int>(datagram.size()), test::argumentOf(&arrived), 0);
            EXPECT_EQ(arrived.m_Count, 1);
            EXPECT_EQ(arrived.m_Fields, fields);
        });
}

TEST(DispatchSweep, DefaultObjectsArriveEqualThroughTheSocketAnalyser)
{
    CCmdAnalyserSocket none;
    const auto socket = CCommandSocket::createInstance(&none);
    forEveryCommand(
        [&](const ClassInfo& info)
        {
            std::string fields;
            CCmdPackager pk;
            frame(pk, info, defaultPayload(info, fields));
            const auto store = zet::MemoryStream::createInstance();
            zet::OutputStream out(store.get());
            ASSERT_TRUE(pk.Send(out));
            zet::InputStream in(store.get());

            const auto analyser = std::make_unique<CCmdAnalyserSocket>();
            Arrived arrived{&info};
            analyser->Install(info.m_Id, info.m_ProcessSocket, onSocketCommand, test::argumentOf(&arrived), 0);
            EXPECT_TRUE(analyser->Analyse(socket.get(), in));
            EXPECT_EQ(arrived.m_Count, 1);
            EXPECT_EQ(arrived.m_Fields, fields);
        });
}

TEST(DispatchSweep, PayloadWithAByteTooManyIsRefusedForEveryCommand)
{
    const test::LogLines quiet;
    unsigned seed = 77;
    forEveryCommand(
        [&](const ClassInfo& info)
        {
            const std::string payload = test::PayloadMaker(++seed).make(info.m_Wire()).m_Bytes;
            Arrived arrived{&info};
            for (const auto& [bytes, expected] : {std::pair(payload, 1), std::pair(payload + '\0', 1)})
            {
                CCmdPackager pk;
                frame(pk, info, bytes);
                EXPECT_EQ(info.m_Process(&pk, onCommand, test::argumentOf(&arrived), 0),
                          bytes.size() == payload.size());
                EXPECT_EQ(arrived.m_Count, expected);
            }
        });
}

// Whether a missing last value fails the read: an element of an untested list does not.
bool tailDecides(const wire::Schema& schema)
{
    const wire::Field& last = schema.fields.back();
    if (last.kind == wire::Kind::kRecord)
        return tailDecides(*last.record);
    return last.how.reading == wire::Decides::kAll && last.says != wire::Says::kMember;
}

TEST(DispatchSweep, PayloadWithAByteTooFewIsRefusedUnlessItsTailIsNotTested)
{
    const test::LogLines quiet;
    unsigned seed = 99;
    forEveryCommand(
        [&](const ClassInfo& info)
        {
            std::string payload = test::PayloadMaker(++seed).make(info.m_Wire()).m_Bytes;
            payload.pop_back();
            Arrived arrived{&info};
            CCmdPackager pk;
            frame(pk, info, payload);
            const bool taken = info.m_Process(&pk, onCommand, test::argumentOf(&arrived), 0);
            EXPECT_FALSE(taken && tailDecides(info.m_Wire()));
        });
}

TEST(DispatchSweep, DatagramsWithAddressesAreSurvivedByEveryCommand)
{
    const test::LogLines quiet;
    const auto analyser = std::make_unique<CCmdAnalyser>();
    forEveryCommand(
        [&](const ClassInfo& info)
        {
            analyser->Install(info.m_Id, info.m_Process, onCommand);
            Arrived arrived{&info};
            for (unsigned flags = 1; flags <= 3; ++flags)
            {
                for (unsigned size = 0; size <= 40; ++size)
                {
                    // Unpack leaves the read pointer after the addresses, which it did not read from here.
                    const unsigned word = size << 2 | flags;
                    std::string datagram{static_cast<char>(info.m_Id), static_cast<char>(info.m_Id >> 8),
                                         static_cast<char>(word >> 8 | 0x40), static_cast<char>(word)};
                    datagram.append(32 + size, '\0');
                    analyser->Analyse(datagram.data(), static_cast<int>(datagram.size()), test::argumentOf(&arrived),
                                      0);
                }
            }
        });
}

TEST(DispatchSweep, EveryUnassignedIdIsUnknown)
{
    const test::LogLines log;
    const auto analyser = std::make_unique<CCmdAnalyser>();
    int unknown = 0;
    std::set<int> assigned;
    for (const ClassInfo& info : tools::classTable())
    {
        if (info.m_Family != Family::kCommand)
            continue;
        analyser->Install(info.m_Id, info.m_Process, onCommand);
        assigned.insert(info.m_Id);
    }
    for (int id = 0; id < kCommandIdLimit; ++id)
    {
        if (!tools::classesOfId(static_cast<unsigned short>(id)).empty())
            continue;
        CCmdPackager pk;
        pk.SetCmdID(static_cast<unsigned short>(id));
        analyser->Analyse(pk, 0, 0);
        ++unknown;
    }
    EXPECT_EQ(unknown, kCommandIdLimit - static_cast<int>(assigned.size()));
    EXPECT_EQ(static_cast<int>(log.texts().size()), unknown);
}

} // namespace
