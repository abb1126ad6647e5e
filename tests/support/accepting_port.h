// A TCP port that accepts each connection.
#pragma once

#include "net/tcp/server.h"
#include "net/tcp/stream.h"

#include <gtest/gtest.h>

#include <vector>

namespace test
{

class AcceptingPort : public zet::TcpServer
{
public:
    void onAccept() override
    {
        m_Accepted.push_back(new zet::TcpStream);
        EXPECT_TRUE(accept(m_Accepted.back()));
    }

    std::vector<zet::Unknown::Handle_T<zet::TcpStream>> m_Accepted;
};

} // namespace test
