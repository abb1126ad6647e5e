#include "framework/unknown.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <type_traits>
#include <vector>

using zet::Unknown;

namespace
{

class Counted : public virtual Unknown
{
public:
    explicit Counted(int* alive = nullptr) : m_Alive(alive)
    {
        if (m_Alive)
            ++*m_Alive;
    }
    Counted(const Counted&) = delete;
    ~Counted() override
    {
        if (m_Alive)
            --*m_Alive;
    }
    const wchar_t* getClassName() const override { return L"test::Counted"; }
    Unknown* rtCreateInstance() const override { return new Counted; }

private:
    int* m_Alive;
};

class Derived : public Counted
{
public:
    using Counted::Counted;
    const wchar_t* getClassName() const override { return L"test::Derived"; }
};

Unknown* makeCounted()
{
    return new Counted;
}

} // namespace

TEST(Handle, LastOneDeletesTheObject)
{
    int alive = 0;
    {
        Unknown::Handle_T<Counted> first = new Counted(&alive);
        EXPECT_EQ(first->getRefCount(), 1);
        {
            const Unknown::Handle_T<Counted> second = first;
            EXPECT_EQ(first->getRefCount(), 2);
            EXPECT_EQ(second.get(), first.get());
        }
        EXPECT_EQ(first->getRefCount(), 1);
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(Handle, AssignmentLetsTheOldObjectGo)
{
    int first = 0;
    int second = 0;
    Unknown::Handle_T<Counted> handle = new Counted(&first);
    handle = new Counted(&second);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    const Unknown::Handle_T<Counted>& same = handle;
    handle = same;
    EXPECT_EQ(second, 1);
    EXPECT_EQ(handle->getRefCount(), 1);
    handle = nullptr;
    EXPECT_EQ(second, 0);
    EXPECT_TRUE(handle.isNull());
    EXPECT_FALSE(handle);
}

TEST(Handle, MoveTakesTheCountAlong)
{
    int alive = 0;
    Unknown::Handle_T<Counted> from = new Counted(&alive);
    const Unknown::Handle_T<Counted> to = std::move(from);
    EXPECT_TRUE(from.isNull()); // NOLINT(bugprone-use-after-move): what is left is the point
    EXPECT_EQ(to->getRefCount(), 1);
    EXPECT_EQ(alive, 1);
}

TEST(Handle, ConvertsToABase)
{
    int alive = 0;
    Unknown::Handle_T<Derived> derived = new Derived(&alive);
    Unknown::Handle_T<Unknown> base = derived;
    derived.clear();
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(std::wstring(base->getClassName()), L"test::Derived");
    base.clear();
    EXPECT_EQ(alive, 0);
}

TEST(Handle, ConvertsWhereItsPointerDoes)
{
    using Base = Unknown::Handle_T<Counted>;
    using Below = Unknown::Handle_T<Derived>;
    EXPECT_TRUE((std::is_convertible_v<Below, Base>));
    EXPECT_TRUE((std::is_convertible_v<Base, Unknown::Handle_T<Unknown>>));
    EXPECT_FALSE((std::is_constructible_v<Below, Base>));
    EXPECT_FALSE((std::is_assignable_v<Below&, Base>));
    EXPECT_FALSE((std::is_constructible_v<Unknown::Handle_T<zet::Object>, Base>));
}

TEST(Handle, CastsDownByNameAlone)
{
    int alive = 0;
    const Unknown::Handle_T<Unknown> base = new Derived(&alive);
    const Unknown::Handle_T<Derived> derived = base.castTo<Derived>();
    EXPECT_EQ(derived.get(), dynamic_cast<Derived*>(base.get()));
    EXPECT_EQ(base->getRefCount(), 2);
    const Unknown::Handle_T<zet::Object> other = base.castTo<zet::Object>();
    EXPECT_TRUE(other.isNull());
    EXPECT_EQ(base->getRefCount(), 2);
    EXPECT_TRUE(Unknown::Handle_T<Unknown>().castTo<Derived>().isNull());
}

TEST(Handle, CountsHoldAcrossThreads)
{
    int alive = 0;
    {
        const Unknown::Handle_T<Counted> shared = new Counted(&alive);
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
        {
            threads.emplace_back(
                [own = shared]
                {
                    for (int round = 0; round < 2000; ++round)
                    {
                        const Unknown::Handle_T<Counted> copy = own;
                        ASSERT_GE(copy->getRefCount(), 2);
                    }
                });
        }
        for (std::thread& thread : threads)
            thread.join();
        threads.clear();
        EXPECT_EQ(shared->getRefCount(), 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(Unknown, CopyOfAnObjectHasACountOfItsOwn)
{
    class Value : public Unknown
    {
    };
    const Unknown::Handle_T<Value> first = new Value;
    const Unknown::Handle_T<Value> second = new Value(*first);
    EXPECT_EQ(second->getRefCount(), 1);
    *second = *first;
    EXPECT_EQ(second->getRefCount(), 1);
}

TEST(Unknown, ClassIdComesFromTheName)
{
    const Unknown::Handle_T<Counted> counted = new Counted;
    const Unknown::Handle_T<Counted> another = new Counted;
    const Unknown::Handle_T<Derived> derived = new Derived;
    EXPECT_EQ(counted->getClassId(), another->getClassId());
    EXPECT_NE(counted->getClassId(), derived->getClassId());
}

TEST(Unknown, WithoutAFormOfItsOwnHasNone)
{
    const Unknown::Handle_T<Unknown> object = new Unknown;
    EXPECT_EQ(object->clone(), nullptr);
    EXPECT_EQ(object->rtCreateInstance(), nullptr);
    EXPECT_EQ(std::wstring(object->getClassTimestamp()), L"");
}

TEST(RtFactory, MakesWhatIsRegistered)
{
    EXPECT_EQ(Unknown::RtFactory::create(L"test::Counted"), nullptr);
    Unknown::RtFactory::setupCreator(L"test::Counted", makeCounted);
    const Unknown::Handle_T<Unknown> made = Unknown::RtFactory::create(L"test::Counted");
    ASSERT_FALSE(made.isNull());
    EXPECT_EQ(std::wstring(made->getClassName()), L"test::Counted");
    Unknown::RtFactory::unsetupCreator(L"test::Counted");
    EXPECT_EQ(Unknown::RtFactory::create(L"test::Counted"), nullptr);
}

TEST(Object, GetsAnIdentifierOfItsOwn)
{
    const Unknown::Handle_T<zet::Object> first = new zet::Object;
    const Unknown::Handle_T<zet::Object> second = new zet::Object;
    EXPECT_FALSE(first->getObjectId().isNull());
    EXPECT_FALSE(first->getObjectId() == second->getObjectId());
    zet::Uuid id;
    id.m_Data1 = 9;
    const Unknown::Handle_T<zet::Object> third = new zet::Object(id);
    EXPECT_TRUE(third->getObjectId() == id);
}
