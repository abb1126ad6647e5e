// The default name of a system was the executable's name up to its first dot: "zone.1" and "zone.2" wrote to the same
// log file, and ".svc" logged under an empty name. The name now loses only the extension, and a number is not an
// extension.
#include "framework/system.h"

#include <gtest/gtest.h>

namespace
{

zet::String_T<wchar_t> nameOf(const wchar_t* path)
{
    return zet::ServiceSystem::getDefaultSystemName(path);
}

TEST(Bugs, ASystemsNameLosesItsExtensionAlone)
{
    EXPECT_EQ(nameOf(L"/srv/game/zone"), L"zone");
    EXPECT_EQ(nameOf(L"D:/svr/zone.exe"), L"zone");
    EXPECT_EQ(nameOf(L"/srv/v1.2/zone"), L"zone");
    EXPECT_EQ(nameOf(L"/srv/zone.east.exe"), L"zone.east");
    EXPECT_EQ(nameOf(L"D:/svr/zone.1.exe"), L"zone.1");
    EXPECT_EQ(nameOf(L"/srv/zone.1"), L"zone.1");
    EXPECT_EQ(nameOf(L"/srv/zone.2"), L"zone.2");
    EXPECT_EQ(nameOf(L"/srv/zone."), L"zone");
}

TEST(Bugs, ASystemsNameIsNotCutToNothing)
{
    EXPECT_EQ(nameOf(L"/srv/.svc"), L".svc");
    EXPECT_EQ(nameOf(L".svc"), L".svc");
    EXPECT_EQ(nameOf(L"/srv/.svc.bin"), L".svc");
}

} // namespace
