// Properties of every class, derived from its schema: random payloads, truncations, hostile counts, default objects.
#include "tests/support/allocations.h"
#include "tests/support/payload_maker.h"
#include "tools/object_json.h"
#include "tools/read_failure.h"
#include "tools/reading.h"
#include "tools/schema_reader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace
{

using tools::ClassInfo;
using tools::Form;
using tools::Reading;

constexpr int kPayloads = 20;

// Calls check for every class in each of its forms, under a trace that names them.
template <class Check>
void forEveryClass(Check check)
{
    for (const ClassInfo& info : tools::classTable())
    {
        for (const Form form : {Form::kCmd, Form::kData})
        {
            if (!tools::hasForm(info, form))
                continue;
            SCOPED_TRACE(std::string(info.m_Name) + (form == Form::kCmd ? " cmd" : " data"));
            check(info, form);
        }
    }
}

nlohmann::ordered_json fieldsOf(const ClassInfo& info, const Reading& reading)
{
    return tools::objectJson(info.m_Wire(), reading.m_Object.get());
}

TEST(Sweep, RandomPayloadsReadWholeAndRewriteToTheSameBytes)
{
    unsigned seed = 1;
    forEveryClass(
        [&](const ClassInfo& info, Form form)
        {
            test::PayloadMaker maker(++seed);
            for (int i = 0; i < kPayloads; ++i)
            {
                const std::string bytes = maker.make(info.m_Wire()).m_Bytes;
                const Reading reading = tools::readBytes(info, form, bytes);
                EXPECT_TRUE(reading.m_Read);
                EXPECT_EQ(reading.m_Consumed, static_cast<int>(bytes.size()));
                EXPECT_TRUE(reading.m_Write);
                ASSERT_EQ(tools::hexOf(reading.m_Rewrite.data(), reading.m_Rewrite.size()),
                          tools::hexOf(bytes.data(), bytes.size()));
            }
        });
}

TEST(Sweep, SchemaReadsTheSameFieldsAsTheClass)
{
    unsigned seed = 1000;
    forEveryClass(
        [&](const ClassInfo& info, Form form)
        {
            test::PayloadMaker maker(++seed);
            for (int i = 0; i < kPayloads; ++i)
            {
                const std::string bytes = maker.make(info.m_Wire()).m_Bytes;
                const tools::Explanation explanation = tools::explain(info.m_Wire(), bytes);
                EXPECT_EQ(explanation.m_Failure, "");
                EXPECT_EQ(explanation.m_Consumed, bytes.size());
                ASSERT_EQ(explanation.m_Json.dump(), fieldsOf(info, tools::readBytes(info, form, bytes)).dump());
            }
        });
}

TEST(Sweep, EveryTruncationIsSurvivedWithinThePayload)
{
    unsigned seed = 2000;
    forEveryClass(
        [&](const ClassInfo& info, Form form)
        {
            test::PayloadMaker maker(++seed);
            const std::string whole = maker.make(info.m_Wire()).m_Bytes;
            const size_t step = whole.size() > 600 ? whole.size() / 300 : 1;
            for (size_t size = 0; size < whole.size(); size += step)
            {
                const Reading reading = tools::readBytes(info, form, whole.substr(0, size));
                ASSERT_LE(reading.m_Consumed, static_cast<int>(size));
            }
        });
}

// Whole, cut anywhere, and with any byte changed: by the schema alone the same result after the same bytes.
TEST(Sweep, ASchemaFailsWhereItsClassDoes)
{
    unsigned seed = 5000;
    size_t failures = 0;
    forEveryClass(
        [&](const ClassInfo& info, Form form)
        {
            const auto check = [&](const std::string& bytes)
            {
                const Reading reading = tools::readOnly(info, form, bytes);
                const tools::ClassReading other = tools::readAsClass(
                    info.m_Wire(), bytes, form == Form::kCmd ? tools::Limits::kOfCommands : tools::Limits::kNone);
                ASSERT_EQ(other.m_Read, reading.m_Read) << tools::hexOf(bytes.data(), bytes.size());
                ASSERT_EQ(other.m_Consumed, static_cast<size_t>(reading.m_Consumed))
                    << tools::hexOf(bytes.data(), bytes.size());
                failures += reading.m_Read ? 0 : 1;
            };
            test::PayloadMaker maker(++seed);
            std::mt19937 random(seed);
            std::string whole = maker.make(info.m_Wire()).m_Bytes;
            for (int i = 0; i < 3; ++i)
                if (std::string more = maker.make(info.m_Wire()).m_Bytes; more.size() < 2000)
                    whole = std::move(more);
            const size_t step = whole.size() / 150 + 1;
            for (size_t size = 0; size <= whole.size(); size += step)
                check(whole.substr(0, size));
            for (size_t i = 0; i < whole.size(); i += step)
            {
                std::string changed = whole;
                changed[i] = static_cast<char>(random());
                check(changed);
                changed.resize(i + (changed.size() - i) / 2);
                check(changed);
            }
        });
    EXPECT_GT(failures, 10000u);
}

TEST(Sweep, HostileCountsCostNoMoreThanTheirBytesAllow)
{
    // A count may create 1,024 elements of the largest record without bytes; the rest is the object itself.
    constexpr long long kBudget = 8 << 20;
    unsigned seed = 3000;
    forEveryClass(
        [&](const ClassInfo& info, Form form)
        {
            test::PayloadMaker maker(++seed);
            const test::MadePayload made = maker.make(info.m_Wire());
            for (const test::CountPlace& place : made.m_Counts)
            {
                for (const unsigned hostile : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x80000000u, 1025u, 70000u})
                {
                    std::string bytes = made.m_Bytes;
                    for (size_t i = 0; i < 4; ++i)
                        bytes[place.m_Offset + i] = static_cast<char>(hostile >> 8 * (3 - i));
                    const test::AllocationCount allocations;
                    const Reading reading = tools::readBytes(info, form, bytes);
                    EXPECT_LE(reading.m_Consumed, static_cast<int>(bytes.size()));
                    EXPECT_LE(allocations.bytes(), kBudget) << place.m_Field << " = " << hostile;
                    EXPECT_LE(tools::explain(info.m_Wire(), bytes).m_Consumed, bytes.size());
                }
            }
        });
}

TEST(Sweep, CountOfOneMoreThanThereIsIsSurvived)
{
    unsigned seed = 4000;
    forEveryClass(
        [&](const ClassInfo& info, Form form)
        {
            test::PayloadMaker maker(++seed);
            const test::MadePayload made = maker.make(info.m_Wire());
            for (const test::CountPlace& place : made.m_Counts)
            {
                std::string bytes = made.m_Bytes;
                ++bytes[place.m_Offset + 3];
                EXPECT_LE(tools::readBytes(info, form, bytes).m_Consumed, static_cast<int>(bytes.size()));
            }
        });
}

TEST(Sweep, DefaultObjectsComeBackEqual)
{
    forEveryClass(
        [&](const ClassInfo& info, Form form)
        {
            const std::shared_ptr<void> object = info.make();
            bool write = false;
            const std::string bytes = tools::writeObject(info, form, object.get(), write);
            EXPECT_TRUE(write);
            EXPECT_GE(static_cast<int>(bytes.size()), info.m_Wire().smallest);
            const Reading reading = tools::readBytes(info, form, bytes);
            EXPECT_TRUE(reading.m_Read);
            EXPECT_EQ(reading.m_Consumed, static_cast<int>(bytes.size()));
            EXPECT_EQ(fieldsOf(info, reading).dump(), tools::objectJson(info.m_Wire(), object.get()).dump());
        });
}

} // namespace
