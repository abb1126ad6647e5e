// Payloads for the tests of commands, built by hand and compared byte by byte.
#pragma once

#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "packaging/data_packager.h"

#include <vector>

namespace tests
{

using Bytes = std::vector<unsigned char>;

template <class P>
Bytes bytesOf(const P& packager)
{
    return Bytes(packager.GetBuffer(), packager.GetBuffer() + packager.GetDataSize());
}

// The bytes that a command or a record writes, empty on failure.
template <class P = CCmdPackager, class T>
Bytes written(const T& object)
{
    P packager;
    return object.Write(&packager) ? bytesOf(packager) : Bytes();
}

// Starts the payload of a command with a default head.
inline void writeHead(CCmdPackager& packager, unsigned short id)
{
    static_cast<void>(CCmdPlatform(id).Write(&packager));
}

} // namespace tests
