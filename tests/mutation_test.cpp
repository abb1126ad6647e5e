// Every golden vector truncated at each byte and with each bit inverted, and every command's frames truncated at each
// byte and with each bit of their heads inverted: no read crashes, passes the end of its bytes or takes more memory
// than the bytes allow.
#include "framework/memory_stream.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "tests/support/allocations.h"
#include "tests/support/golden.h"
#include "tests/support/places.h"
#include "tools/frame_decoder.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace
{

using golden::Vector;
using golden::Width;
using tools::ClassInfo;
using tools::Form;

// A count may create 1,024 elements of the largest record without bytes; the rest is the object itself.
constexpr long long kBudget = 8 << 20;
// The few longer payloads have their own tests, so that several processes share the work.
constexpr size_t kLong = 16 * 1024;

const golden::Book& book()
{
    static const golden::Book loaded(test::getTestsFolder() + "/golden");
    return loaded;
}

// The bytes in a width of text, as the two text forms are different readings. Where the bytes are the same in both
// widths, the narrow one has them.
std::optional<std::string> payloadOf(const Vector& vector, Width width)
{
    if (!(width == Width::k16 ? vector.m_Has16 : vector.m_Has32))
        return std::nullopt;
    std::string bytes = book().bytes(vector, width);
    if (width == Width::k32 && vector.m_Has16 && bytes == book().bytes(vector, Width::k16))
        return std::nullopt;
    return bytes;
}

// Calls survives with the bytes truncated at each position, and with each bit of the bytes from begin to end inverted,
// until a call returns false.
template <class Survives>
void forEveryCut(std::string_view bytes, Survives survives)
{
    for (size_t size = 0; size < bytes.size(); ++size)
        if (!survives(bytes.substr(0, size)))
            return;
}
template <class Survives>
void forEveryTurnedBit(std::string bytes, size_t begin, size_t end, Survives survives)
{
    for (size_t at = begin; at < end; ++at)
        for (int bit = 0; bit < 8; ++bit)
        {
            const char whole = bytes[at];
            bytes[at] = static_cast<char>(whole ^ 1 << bit);
            if (!survives(bytes))
                return;
            bytes[at] = whole;
        }
}

// A payload in one width of text, with the class that reads it.
struct Payload
{
    const Vector& m_Vector;
    const ClassInfo& m_Info;
    std::string m_Bytes;

    Form form() const { return m_Vector.m_Form == "cmd" ? Form::kCmd : Form::kData; }
    bool isLong() const { return m_Bytes.size() > kLong; }
    std::string name() const
    {
        return m_Vector.m_Place + " [" + m_Vector.m_Class + " " + m_Vector.m_Form + " " + m_Vector.m_Name + "]";
    }
    bool survives(std::string_view bytes) const
    {
        const test::AllocationCount allocations;
        const tools::Reading reading = tools::readBytes(m_Info, form(), bytes);
        const long long taken = allocations.bytes();
        if (reading.m_Consumed <= static_cast<int>(bytes.size()) && taken <= kBudget)
            return true;
        ADD_FAILURE() << "consumed " << reading.m_Consumed << ", took " << taken << ", of "
                      << tools::hexOf(bytes.data(), bytes.size());
        return false;
    }
};

bool isHead(const Vector& vector)
{
    return vector.m_Name == "head";
}

std::vector<Payload> payloadsOf(tools::Family family, Width width)
{
    std::vector<Payload> payloads;
    for (const Vector& vector : book().all())
    {
        const ClassInfo* const info = isHead(vector) ? nullptr : tools::findClass(vector.m_Class);
        if (info && info->m_Family == family)
            if (auto bytes = payloadOf(vector, width))
                payloads.push_back({vector, *info, std::move(*bytes)});
    }
    return payloads;
}

void checkFamily(tools::Family family, Width width)
{
    int readings = 0;
    const auto payloads = payloadsOf(family, width);
    EXPECT_GT(payloads.size(), 100U);
    for (const Payload& payload : payloads)
    {
        if (payload.isLong())
            continue;
        SCOPED_TRACE(payload.name());
        const auto survives = [&](std::string_view bytes)
        {
            ++readings;
            return payload.survives(bytes);
        };
        forEveryCut(payload.m_Bytes, survives);
        forEveryTurnedBit(payload.m_Bytes, 0, payload.m_Bytes.size(), survives);
    }
    testing::Test::RecordProperty("Readings", readings);
}

TEST(Mutation, CommandsIn16BitTextSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kCommand, Width::k16);
}

TEST(Mutation, CommandsIn32BitTextSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kCommand, Width::k32);
}

TEST(Mutation, RecordsIn16BitTextSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kRecord, Width::k16);
}

TEST(Mutation, RecordsIn32BitTextSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kRecord, Width::k32);
}

TEST(Mutation, MessagesIn16BitTextSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kMessage, Width::k16);
}

TEST(Mutation, MessagesIn32BitTextSurviveEveryCutAndTurnedBit)
{
    checkFamily(tools::Family::kMessage, Width::k32);
}

// Calls check with each long payload.
template <class Check>
void forEveryLong(Check check)
{
    int count = 0;
    for (const auto family : {tools::Family::kCommand, tools::Family::kRecord, tools::Family::kMessage})
        for (const Width width : {Width::k16, Width::k32})
            for (const Payload& payload : payloadsOf(family, width))
                if (payload.isLong())
                {
                    ++count;
                    SCOPED_TRACE(payload.name());
                    check(payload.m_Bytes, [&](std::string_view bytes) { return payload.survives(bytes); });
                }
    EXPECT_GT(count, 0);
}

TEST(Mutation, LongPayloadsSurviveEveryCut)
{
    forEveryLong([](const std::string& bytes, auto survives) { forEveryCut(bytes, survives); });
}

TEST(Mutation, LongPayloadsSurviveEveryTurnedBitOfTheirFirstHalf)
{
    forEveryLong([](const std::string& bytes, auto survives)
                 { forEveryTurnedBit(bytes, 0, bytes.size() / 2, survives); });
}

TEST(Mutation, LongPayloadsSurviveEveryTurnedBitOfTheirSecondHalf)
{
    forEveryLong([](const std::string& bytes, auto survives)
                 { forEveryTurnedBit(bytes, bytes.size() / 2, bytes.size(), survives); });
}

template <class Head>
bool readsHead(std::string_view bytes)
{
    CCmdPackager packager;
    packager.SetCmdID(1);
    EXPECT_TRUE(packager.Write(bytes.data(), static_cast<int>(bytes.size())));
    Head head(1);
    const bool isRead = head.Read(&packager);
    EXPECT_LE(packager.GetReadPointer(), static_cast<int>(bytes.size()));
    return isRead;
}

TEST(Mutation, HeadsSurviveEveryCutAndTurnedBit)
{
    const std::map<std::string, bool (*)(std::string_view)> readers = {{"CCmdHead", readsHead<CCmdHead>},
                                                                       {"CCmdPlatform", readsHead<CCmdPlatform>},
                                                                       {"CCmdSystem", readsHead<CCmdSystem>}};
    size_t heads = 0;
    for (const Vector& vector : book().all())
    {
        if (!isHead(vector))
            continue;
        ++heads;
        SCOPED_TRACE(vector.m_Class);
        const auto reads = readers.at(vector.m_Class);
        for (const Width width : {Width::k16, Width::k32})
            if (const auto whole = payloadOf(vector, width))
            {
                EXPECT_TRUE(reads(*whole));
                const auto survives = [&](std::string_view bytes)
                {
                    const test::AllocationCount allocations;
                    reads(bytes);
                    EXPECT_LE(allocations.bytes(), kBudget);
                    return !HasFailure();
                };
                forEveryCut(*whole, survives);
                forEveryTurnedBit(*whole, 0, whole->size(), survives);
            }
    }
    EXPECT_EQ(heads, readers.size());
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

// A payload after a whole frame head is read above; here the bits of the head are inverted, including the addresses.
TEST(Mutation, FramesSurviveEveryCutAndEveryTurnedBitOfTheirHeads)
{
    std::set<std::string> classes;
    int readings = 0;
    // A packet is reported by its length alone.
    constexpr int kFewestBytes = 4;
    const auto check = [&](const std::string& whole, size_t headSize, tools::Framing framing)
    {
        const auto survives = [&](std::string_view bytes)
        {
            const test::AllocationCount allocations;
            int told = 0;
            tools::FrameDecoder decoder(framing, [&](std::string_view, bool) { ++told; });
            decoder.add(bytes);
            decoder.finish();
            const long long taken = allocations.bytes();
            ++readings;
            if (told <= static_cast<int>(bytes.size()) / kFewestBytes + 2 && taken <= kBudget)
                return true;
            ADD_FAILURE() << "reported " << told << " frames, consumed " << taken << ", of "
                          << tools::hexOf(bytes.data(), bytes.size());
            return false;
        };
        forEveryCut(whole, survives);
        forEveryTurnedBit(whole, 0, headSize, survives);
    };
    for (const Width width : {Width::k16, Width::k32})
        for (const Payload& payload : payloadsOf(tools::Family::kCommand, width))
        {
            if (payload.form() != Form::kCmd)
                continue;
            classes.insert(payload.m_Vector.m_Class);
            SCOPED_TRACE(payload.name());
            const std::string packet = packetOf(payload.m_Info, payload.m_Bytes);
            check(packet, packet.size() - payload.m_Bytes.size(), tools::Framing::kPackets);
            const std::string datagram = datagramOf(payload.m_Info, payload.m_Bytes);
            check(datagram, datagram.size() - payload.m_Bytes.size(), tools::Framing::kDatagram);
        }
    EXPECT_GT(classes.size(), 200U);
    RecordProperty("Readings", readings);
}

} // namespace
