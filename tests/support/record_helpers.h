// Helpers that make and compare records and dates in the tests of player data.
#pragma once

#include "framework/time.h"
#include "packaging/cmd_packager.h"
#include "playerdata/items.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace test
{

// The bytes of a record, used to compare all members.
template <class Packager = CCmdPackager, class Record>
std::string bytesOf(const Record& record)
{
    const auto packager = std::make_unique<Packager>();
    EXPECT_TRUE(record.Write(packager.get()));
    return {reinterpret_cast<const char*>(packager->GetBuffer()), static_cast<size_t>(packager->GetDataSize())};
}

inline long long secondsOf(const wchar_t* date)
{
    zet::Time time;
    EXPECT_TRUE(time.convertFromString(date));
    return time.getSeconds();
}

inline FGameItem itemOf(const wchar_t* name, int num, const wchar_t* deadline = L"")
{
    FGameItem item;
    item.m_Name = name;
    item.m_Num = num;
    item.m_Deadline = deadline;
    return item;
}

} // namespace test
