#include "framework/dictionary.h"

#include "framework/shared_ptr.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using zet::Dictionary;

namespace
{

using Numbers = Dictionary<int, std::string>;

class FunctionWalker : public Numbers::Walker
{
public:
    explicit FunctionWalker(std::function<bool(const int&, std::string&)> action) : m_Action(std::move(action)) {}
    bool onEntry(const int& key, std::string& value) override { return m_Action(key, value); }

private:
    std::function<bool(const int&, std::string&)> m_Action;
};

bool walk(Numbers& numbers, const std::function<bool(const int&, std::string&)>& action)
{
    FunctionWalker walker(action);
    return numbers.foreach(walker);
}

Numbers makeNumbers(int count)
{
    Numbers numbers;
    for (int i = count; i > 0; --i)
        numbers.set(i, "v" + std::to_string(i));
    return numbers;
}

std::vector<int> keysOf(Numbers& numbers)
{
    std::vector<int> keys;
    walk(numbers,
         [&](const int& key, std::string&)
         {
             keys.push_back(key);
             return true;
         });
    return keys;
}

} // namespace

TEST(Dictionary, WalksInOrder)
{
    Numbers numbers = makeNumbers(4);
    EXPECT_EQ(keysOf(numbers), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(numbers.getSize(), 4);
}

TEST(Dictionary, SetReplacesAndFindShows)
{
    Numbers numbers;
    EXPECT_EQ(numbers.find(1), nullptr);
    numbers.set(1, "a");
    numbers.set(1, "b");
    ASSERT_NE(numbers.find(1), nullptr);
    EXPECT_EQ(*numbers.find(1), "b");
    EXPECT_EQ(numbers.getSize(), 1);
    EXPECT_FALSE(numbers.erase(2));
    EXPECT_TRUE(numbers.erase(1));
    EXPECT_TRUE(numbers.isEmpty());
}

TEST(Dictionary, WalkerChangesTheValueInPlace)
{
    Numbers numbers = makeNumbers(2);
    walk(numbers,
         [](const int&, std::string& value)
         {
             value += "!";
             return true;
         });
    EXPECT_EQ(*numbers.find(1), "v1!");
    EXPECT_EQ(*numbers.find(2), "v2!");
}

TEST(Dictionary, FalseStopsTheWalk)
{
    Numbers numbers = makeNumbers(5);
    int seen = 0;
    EXPECT_FALSE(walk(numbers, [&](const int& key, std::string&) { return ++seen, key < 3; }));
    EXPECT_EQ(seen, 3);
}

TEST(Dictionary, WalkerMayEraseItsOwnEntry)
{
    Numbers numbers = makeNumbers(5);
    std::vector<std::string> seen;
    EXPECT_TRUE(walk(numbers,
                     [&](const int& key, std::string& value)
                     {
                         EXPECT_TRUE(numbers.erase(key));
                         EXPECT_EQ(numbers.find(key), nullptr);
                         // Both stay readable until the walker returns.
                         seen.push_back(std::to_string(key) + value);
                         return true;
                     }));
    EXPECT_EQ(seen, (std::vector<std::string>{"1v1", "2v2", "3v3", "4v4", "5v5"}));
    EXPECT_TRUE(numbers.isEmpty());
}

TEST(Dictionary, WalkerMayEraseTheNextEntry)
{
    Numbers numbers = makeNumbers(5);
    std::vector<int> seen;
    walk(numbers,
         [&](const int& key, std::string&)
         {
             seen.push_back(key);
             numbers.erase(key + 1);
             return true;
         });
    EXPECT_EQ(seen, (std::vector<int>{1, 3, 5}));
}

TEST(Dictionary, WalkerMayClearAll)
{
    Numbers numbers = makeNumbers(5);
    int seen = 0;
    EXPECT_TRUE(walk(numbers,
                     [&](const int&, std::string& value)
                     {
                         ++seen;
                         numbers.clear();
                         EXPECT_EQ(value, "v1");
                         return true;
                     }));
    EXPECT_EQ(seen, 1);
}

TEST(Dictionary, EntriesSetAheadAreVisited)
{
    Numbers numbers = makeNumbers(2);
    std::vector<int> seen;
    walk(numbers,
         [&](const int& key, std::string&)
         {
             seen.push_back(key);
             if (key == 1)
                 numbers.set(7, "late");
             return true;
         });
    EXPECT_EQ(seen, (std::vector<int>{1, 2, 7}));
}

TEST(Dictionary, ErasedAndSetAgainIsANewEntry)
{
    Numbers numbers = makeNumbers(1);
    walk(numbers,
         [&](const int& key, std::string& value)
         {
             numbers.erase(key);
             numbers.set(0, "other");
             numbers.set(1, "again");
             EXPECT_EQ(value, "v1");
             return false;
         });
    EXPECT_EQ(*numbers.find(1), "again");
}

TEST(Dictionary, InnerWalkMayEraseWhatTheOuterLooksAt)
{
    Numbers numbers = makeNumbers(3);
    std::vector<std::string> outer;
    walk(numbers,
         [&](const int& key, std::string& value)
         {
             walk(numbers,
                  [&](const int& inner, std::string& innerValue)
                  {
                      numbers.erase(inner);
                      EXPECT_EQ(innerValue, "v" + std::to_string(inner));
                      return true;
                  });
             outer.push_back(std::to_string(key) + value);
             return true;
         });
    EXPECT_EQ(outer, (std::vector<std::string>{"1v1"}));
    EXPECT_TRUE(numbers.isEmpty());
}

TEST(Dictionary, DyingValueMayEraseFurtherEntries)
{
    struct Link
    {
        Dictionary<int, zet::SharedPtr<Link>>* m_Owner;
        int m_Next;
        ~Link() { m_Owner->erase(m_Next); }
    };
    using Links = Dictionary<int, zet::SharedPtr<Link>>;
    Links links;
    for (int i = 1; i <= 4; ++i)
        links.set(i, zet::SharedPtr<Link>(new Link{&links, i + 1}));
    struct Eraser : Links::Walker
    {
        Links& m_Links;
        int m_Seen = 0;
        explicit Eraser(Links& links) : m_Links(links) {}
        bool onEntry(const int& key, zet::SharedPtr<Link>&) override
        {
            ++m_Seen;
            m_Links.erase(key);
            return true;
        }
    } eraser(links);
    EXPECT_TRUE(links.foreach(eraser));
    EXPECT_EQ(eraser.m_Seen, 1);
    EXPECT_TRUE(links.isEmpty());
}
