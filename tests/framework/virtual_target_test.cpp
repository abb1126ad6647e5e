#include "framework/inner/virtual_target.h"

#include <gtest/gtest.h>

namespace
{

using zet::inner::getVirtualTarget;

struct Root
{
    virtual ~Root() = default;
    virtual int first() { return 1; }
    virtual int second(int value) { return value; }
    int plain() { return 3; }
};

struct Inheriting : Root
{
};

struct Overriding : Root
{
    int second(int value) override { return value + 1; }
};

struct Deeper : Overriding
{
};

struct Other
{
    virtual ~Other() = default;
    virtual int third() { return 4; }
};

// Other is not at the start of the object.
struct Both : Root, Other
{
    int first() override { return 5; }
};

struct BothAgain : Both
{
    int third() override { return 6; }
};

// Null on a compiler whose layout is unknown, which then counts as "may override".
bool isKnown()
{
    return getVirtualTarget(Root(), &Root::first) != nullptr;
}

TEST(VirtualTarget, IsKnownOnTheCompilersThatTheLibraryIsBuiltWith)
{
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__) || defined(__aarch64__) || defined(__arm__))
    EXPECT_TRUE(isKnown());
#else
    EXPECT_FALSE(isKnown());
#endif
}

TEST(VirtualTarget, DiffersIfTheFunctionIsOverridden)
{
    if (!isKnown())
        GTEST_SKIP() << "this compiler's layout is not known";
    const void* const target = getVirtualTarget(Root(), &Root::second);
    EXPECT_NE(getVirtualTarget<Root>(Overriding(), &Root::second), target);
    EXPECT_EQ(getVirtualTarget<Root>(Deeper(), &Root::second), getVirtualTarget<Root>(Overriding(), &Root::second));
}

TEST(VirtualTarget, IsTheSameIfAnotherFunctionIsOverridden)
{
    if (!isKnown())
        GTEST_SKIP() << "this compiler's layout is not known";
    EXPECT_EQ(getVirtualTarget<Root>(Inheriting(), &Root::second), getVirtualTarget(Root(), &Root::second));
    EXPECT_EQ(getVirtualTarget<Root>(Overriding(), &Root::first), getVirtualTarget(Root(), &Root::first));
    EXPECT_NE(getVirtualTarget(Root(), &Root::first), getVirtualTarget(Root(), &Root::second));
}

TEST(VirtualTarget, IsFoundInABaseThatIsNotTheFirst)
{
    if (!isKnown())
        GTEST_SKIP() << "this compiler's layout is not known";
    EXPECT_EQ(getVirtualTarget<Other>(Both(), &Other::third), getVirtualTarget(Other(), &Other::third));
    EXPECT_NE(getVirtualTarget<Other>(BothAgain(), &Other::third), getVirtualTarget(Other(), &Other::third));
}

TEST(VirtualTarget, OfAFunctionThatIsNotVirtualIsNull)
{
    EXPECT_EQ(getVirtualTarget(Root(), &Root::plain), nullptr);
}

} // namespace
