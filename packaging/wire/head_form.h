// The heads of commands. Every command has one, so the usual form is inline and costs no call.
#pragma once

#include "packaging/command_head.h"
#include "packaging/wire/value_form.h"

namespace wire
{

template <class Base>
inline constexpr bool kIsFamilyHead = std::is_same_v<Base, CCmdPlatform> || std::is_same_v<Base, CCmdSystem>;
template <class Base>
inline constexpr bool kIsHead = kIsFamilyHead<Base> || std::is_same_v<Base, CCmdHead>;

// Bytes of a family's head before the name, and with an empty name.
constexpr int kFamilyHeadSize = 20;
constexpr int kNamelessHeadSize = kFamilyHeadSize + 1;

// The head part by part: with a name, or if space or bytes may end within it. Not inline, since it is long and rare.
template <class Head>
[[gnu::noinline]] bool writeHeadInParts(CCmdPackager& packager, const Head& head)
{
    writeScalar(packager, head.m_HeadVersion);
    writeScalar(packager, head.m_ClientIndex);
    if constexpr (kIsFamilyHead<Head>)
        return writeScalar(packager, head.m_ClientAddress) && writeText(packager, head.m_AccountName);
    return true;
}

template <class Head>
[[gnu::noinline]] bool readHeadInParts(CCmdPackager& packager, Head& head)
{
    unsigned short version = 0;
    if (!readScalar(packager, &version) || version != head.m_HeadVersion)
        return false;
    // A payload may end after the version: the index then keeps its value.
    readScalar(packager, &head.m_ClientIndex);
    if constexpr (kIsFamilyHead<Head>)
        return readScalar(packager, &head.m_ClientAddress) && readText(packager, &head.m_AccountName);
    return true;
}

// Sets id and addresses and writes the head. Does not check whether version and index fitted.
template <class Head>
inline bool writeHead(CCmdPackager& packager, const Head& head)
{
    packager.SetCmdID(head.m_ID);
    packager.SetAddress(head.m_FromAddress, head.m_TargetAddress);
    if constexpr (kIsFamilyHead<Head> && kHasFastPaths)
    {
        // Between servers the name is mostly empty, and then the whole head has one size.
        unsigned char* const at = Access::freeSpace(packager, kNamelessHeadSize);
        if (at && head.m_AccountName.isEmpty())
        {
            store(at, head.m_HeadVersion);
            store(at + 2, head.m_ClientIndex);
            store(at + 4, head.m_ClientAddress);
            at[kFamilyHeadSize] = 0;
            Access::wrote(packager, kNamelessHeadSize);
            return true;
        }
    }
    return writeHeadInParts(packager, head);
}

template <class Head>
inline bool readHead(CCmdPackager& packager, Head& head)
{
    if (head.m_ID != packager.GetCmdID())
        return false;
    head.SetAddress(packager.GetFromAddress(), packager.GetTargetAddress());
    if constexpr (kIsFamilyHead<Head> && kHasFastPaths)
    {
        // A command that is made to be read has no name to clear.
        const unsigned char* const at = Access::next(packager, kNamelessHeadSize);
        if (at && bigEndian<2>(at) == head.m_HeadVersion && at[kFamilyHeadSize] == 0 && head.m_AccountName.isEmpty())
        {
            load(at + 2, head.m_ClientIndex);
            load(at + 4, head.m_ClientAddress);
            Access::took(packager, kNamelessHeadSize);
            return true;
        }
    }
    return readHeadInParts(packager, head);
}

} // namespace wire
