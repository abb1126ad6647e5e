// Every class against its golden vectors, which are worked out by hand.
#include "tests/support/golden.h"
#include "tests/support/places.h"
#include "tools/line_reader.h"
#include "tools/object_json.h"
#include "tools/object_text.h"
#include "tools/reading.h"

#include <gtest/gtest.h>

#include <set>

namespace
{

using golden::Book;
using golden::Vector;
using golden::Width;

const Book& book()
{
    static const Book loaded(test::getTestsFolder() + "/golden");
    return loaded;
}

tools::Form formOf(const Vector& vector)
{
    return vector.m_Form == "cmd" ? tools::Form::kCmd : tools::Form::kData;
}

std::vector<std::string> classNames()
{
    std::set<std::string> names;
    for (const Vector& vector : book().all())
        if (vector.m_Name != "head")
            names.insert(vector.m_Class);
    return {names.begin(), names.end()};
}

std::string shortHex(const std::string& bytes)
{
    const std::string hex = tools::hexOf(bytes.data(), bytes.size());
    return hex.size() <= 4000 ? hex : hex.substr(0, 4000) + "...";
}

void expectSameBytes(const std::string& expected, const std::string& got, const std::string& what)
{
    if (expected == got)
        return;
    size_t at = 0;
    while (at < expected.size() && at < got.size() && expected[at] == got[at])
        ++at;
    ADD_FAILURE() << what << " differs from byte " << at << " on\n  expected " << shortHex(expected.substr(at))
                  << "\n  got      " << shortHex(got.substr(at));
}

// Equal; numbers with a fraction are compared as floats.
bool sameValue(const nlohmann::json& a, const nlohmann::json& b)
{
    if (a.is_number_float() || b.is_number_float())
        return a.is_number() && b.is_number() && a.get<float>() == b.get<float>();
    if (a.type() != b.type() || !a.is_structured() || a.size() != b.size())
        return a == b;
    if (a.is_array())
        return std::equal(a.begin(), a.end(), b.begin(), sameValue);
    for (const auto& [name, value] : a.items())
        if (!b.contains(name) || !sameValue(value, b[name]))
            return false;
    return true;
}

void checkVector(const tools::ClassInfo& info, const Vector& vector, Width width)
{
    SCOPED_TRACE(vector.m_Place + " [" + vector.m_Class + " " + vector.m_Form + " " + vector.m_Name + "] in " +
                 (width == Width::k16 ? "16" : "32") + "-bit text");
    const tools::Form form = formOf(vector);
    ASSERT_TRUE(tools::hasForm(info, form));

    const std::string bytes = book().bytes(vector, width);
    const tools::Reading reading = tools::readBytes(info, form, bytes);
    EXPECT_EQ(vector.m_Read, reading.m_Read);
    EXPECT_EQ(vector.m_Consumed >= 0 ? vector.m_Consumed : static_cast<int>(bytes.size()), reading.m_Consumed);

    const nlohmann::json expected = book().members(vector);
    const nlohmann::ordered_json got = tools::objectJson(info.m_Wire(), reading.m_Object.get());
    tools::JsonText text;
    tools::addObject(text, info.m_Wire(), reading.m_Object.get());
    EXPECT_EQ(text.view(), tools::printedLine(got));
    for (const auto& [name, value] : expected.items())
        EXPECT_TRUE(got.contains(name) && sameValue(nlohmann::json(got[name]), value))
            << name << "\n  expected " << value.dump() << "\n  got      "
            << (got.contains(name) ? got[name].dump() : "no such member");
    for (const auto& [name, value] : got.items())
        EXPECT_TRUE(expected.contains(name))
            << "the vector gives no value for " << name << ", which is " << value.dump();

    if (vector.m_Rewrite == "-")
        return;
    // A vector for one width of text does not give the bytes that the other width writes.
    if (golden::kNative == Width::k16 ? !vector.m_Has16 : !vector.m_Has32)
        return;
    const Vector& rewrite =
        vector.m_Rewrite.empty() ? vector : book().find(vector.m_Class, vector.m_Form, vector.m_Rewrite);
    EXPECT_TRUE(reading.m_Write);
    expectSameBytes(book().bytes(rewrite, golden::kNative), reading.m_Rewrite, "Write");
}

class Golden : public testing::TestWithParam<std::string>
{
};

TEST_P(Golden, BytesMeanWhatTheVectorSays)
{
    const tools::ClassInfo* const info = tools::findClass(GetParam());
    ASSERT_TRUE(info) << "no such class";
    for (const Vector& vector : book().all())
    {
        if (vector.m_Class != GetParam())
            continue;
        if (vector.m_Has16)
            checkVector(*info, vector, Width::k16);
        if (vector.m_Has32)
            checkVector(*info, vector, Width::k32);
    }
}

INSTANTIATE_TEST_SUITE_P(Vectors, Golden, testing::ValuesIn(classNames()),
                         [](const auto& param) { return param.param; });

TEST(GoldenVectors, EveryClassHasOneInEachOfItsForms)
{
    std::set<std::string> known;
    for (const Vector& vector : book().all())
        known.insert(vector.m_Class + " " + vector.m_Form);
    for (const tools::ClassInfo& info : tools::classTable())
    {
        const std::string name = info.m_Name;
        for (const auto& [form, formName] :
             {std::pair(tools::Form::kCmd, " cmd"), std::pair(tools::Form::kData, " data")})
            EXPECT_TRUE(!tools::hasForm(info, form) || known.contains(name + formName))
                << "no vector [" << name << formName
                << " ...] in tests/golden: work one out by hand, see tests/golden/README.md";
    }
}

} // namespace
