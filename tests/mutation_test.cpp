// Every golden vector cut at each byte and with each bit turned over, a long one at some hundred places, and frames of
// them likewise: no reading crashes, passes the end of its bytes or takes more memory than the bytes allow.
#include "framework/memory_stream.h"
#include "packaging/cmd_packager.h"
#include "tests/support/allocations.h"
#include "tests/support/golden.h"
#include "tools/frame_reader.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <gtest/gtest.h>

#include <set>

namespace
{

using golden::Vector;
using golden::Width;
using tools::ClassInfo;
using tools::Form;

// A count that is taken as told may make 1,024 elements of the largest record; the rest is the object itself.
constexpr long long kBudget = 8 << 20;

const golden::Book& book()
{
    static const golden::Book loaded(COMMONGROUND_TESTS_DIR "/golden");
    return loaded;
}

// Both widths where the bytes differ: the text forms are different readings.
std::vector<std::string> payloadsOf(const Vector& vector)
{
    std::vector<std::string> all;
    if (vector.m_Has16)
        all.push_back(book().bytes(vector, Width::k16));
    if (vector.m_Has32)
        if (std::string bytes = book().bytes(vector, Width::k32); all.empty() || bytes != all.front())
            all.push_back(std::move(bytes));
    return all;
}

// Calls check with every cut and every turned bit; of the few long vectors, which have the same element again and
// again, at places in equal steps.
template <class Check>
void forEveryMutation(const std::string& whole, Check check)
{
    constexpr size_t kMostBytes = 300;
    constexpr size_t kPlaces = 100;
    const size_t step = whole.size() > kMostBytes ? whole.size() / kPlaces : 1;
    for (size_t at = 0; at < whole.size(); at += step)
    {
        check(whole.substr(0, at));
        for (int bit = 0; bit < 8; ++bit)
        {
            std::string turned = whole;
            turned[at] = static_cast<char>(turned[at] ^ 1 << bit);
            check(turned);
        }
    }
}

void checkFamily(tools::Family family)
{
    int vectors = 0;
    for (const Vector& vector : book().all())
    {
        const ClassInfo* const info = vector.m_Name == "head" ? nullptr : tools::findClass(vector.m_Class);
        if (!info || info->m_Family != family)
            continue;
        ++vectors;
        SCOPED_TRACE(vector.m_Place + " [" + vector.m_Class + " " + vector.m_Form + " " + vector.m_Name + "]");
        const Form form = vector.m_Form == "cmd" ? Form::kCmd : Form::kData;
        for (const std::string& whole : payloadsOf(vector))
            forEveryMutation(whole,
                             [&](const std::string& bytes)
                             {
                                 const test::AllocationCount allocations;
                                 const tools::Reading reading = tools::readBytes(*info, form, bytes);
                                 ASSERT_LE(reading.m_Consumed, static_cast<int>(bytes.size()));
                                 ASSERT_LE(allocations.bytes(), kBudget) << tools::hexOf(bytes.data(), bytes.size());
                             });
    }
    EXPECT_GT(vectors, 0);
}

TEST(Mutation, CommandsSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kCommand);
}

TEST(Mutation, RecordsSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kRecord);
}

TEST(Mutation, MessagesSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kMessage);
}

// A packet with the command's stream frame, addresses included.
std::string packetOf(const ClassInfo& info, const std::string& payload)
{
    CCmdPackager packager;
    packager.SetCmdID(info.m_Id);
    zet::Uuid address;
    address.m_Data1 = 1;
    packager.SetAddress(address, address);
    EXPECT_TRUE(packager.Write(payload.data(), static_cast<int>(payload.size())));
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream out(store.get());
    EXPECT_TRUE(packager.Send(out));
    std::string packet(4 + static_cast<size_t>(store->getSize()), '\0');
    for (size_t i = 0; i < 4; ++i)
        packet[i] = static_cast<char>((packet.size() - 4) >> 8 * i);
    store->read(packet.data() + 4, store->getSize());
    return packet;
}

std::string datagramOf(const ClassInfo& info, const std::string& payload)
{
    CCmdPackager packager;
    packager.SetCmdID(info.m_Id);
    EXPECT_TRUE(packager.Write(payload.data(), static_cast<int>(payload.size())));
    std::string datagram(static_cast<size_t>(packager.Pack(nullptr, 0)), '\0');
    EXPECT_EQ(packager.Pack(datagram.data(), static_cast<int>(datagram.size())), static_cast<int>(datagram.size()));
    return datagram;
}

// Calls check with the cuts and turned bits of the head alone.
template <class Check>
void forEveryHead(const std::string& whole, size_t headSize, Check check)
{
    forEveryMutation(whole.substr(0, headSize), [&](const std::string& head)
                     { check(head.size() < headSize ? head : head + whole.substr(headSize)); });
}

TEST(Mutation, FramesSurviveEveryCutAndTurnedBitOfTheirHeads)
{
    std::set<std::string> done;
    for (const Vector& vector : book().all())
    {
        const ClassInfo* const info = vector.m_Name == "head" ? nullptr : tools::findClass(vector.m_Class);
        if (!info || info->m_Family != tools::Family::kCommand || vector.m_Form != "cmd" ||
            !done.insert(vector.m_Class).second)
            continue;
        SCOPED_TRACE(vector.m_Class);
        const std::string payload = payloadsOf(vector).front();
        const auto decode = [&](const std::string& bytes, tools::Framing framing)
        {
            const test::AllocationCount allocations;
            int told = 0;
            tools::decodeFrames(bytes, framing, [&](const nlohmann::ordered_json&) { ++told; });
            ASSERT_LE(told, static_cast<int>(bytes.size()) / CCmdPackager::kMinHeaderSize + 2);
            ASSERT_LE(allocations.bytes(), kBudget) << tools::hexOf(bytes.data(), bytes.size());
        };
        // The packet's length, the frame's id and size word.
        forEveryHead(packetOf(*info, payload), 10,
                     [&](const std::string& bytes) { decode(bytes, tools::Framing::kPackets); });
        const std::string datagram = datagramOf(*info, payload);
        forEveryHead(datagram, datagram.size() - payload.size(),
                     [&](const std::string& bytes) { decode(bytes, tools::Framing::kDatagram); });
    }
    EXPECT_GT(done.size(), 200U);
}

} // namespace
