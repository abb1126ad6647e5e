#include "net/address_filter.h"

#include "framework/platform/platform.h"
#include "framework/string_helper.h"
#include "tests/support/log_lines.h"
#include "transport/framework_server_socket.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#ifndef _WIN32
#include <netinet/in.h>
#else
#include <winsock2.h>
#endif

namespace
{

using zet::AddressFilter;

bool permits(zet::TcpServer& server, const char* text)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = zet::Socket::inet_addr(text);
    return server.permission(address);
}

std::vector<std::string> textsOf(const AddressFilter& filter)
{
    std::vector<std::string> texts;
    for (const AddressFilter::Rule& rule : filter.getRules())
        texts.push_back((rule.m_List == AddressFilter::kRejected ? "-" : "+") +
                        std::string(zet::StringHelper::wideToUtf8(getText(rule)).getBuffer()) + " " +
                        std::to_string(rule.m_Hits));
    return texts;
}

using Texts = std::vector<std::string>;

// A file whose content changes, deleted with the object.
class RuleFile
{
public:
    explicit RuleFile(const char* content) : m_Path(zet::platform::createTempFile(zet::platform::getTempDirectory()))
    {
        write(content);
    }
    ~RuleFile() { zet::platform::deleteFile(m_Path); }
    void write(const char* content) const
    {
        std::FILE* const file = zet::platform::openFile(m_Path, "wb");
        std::fputs(content, file);
        std::fclose(file);
    }

    zet::String_T<wchar_t> m_Path;
};

TEST(AddressFilter, ARulePrintsAsItIsWritten)
{
    AddressFilter filter;
    for (const wchar_t* text : {L"10.0.0.0/8", L"127.0.0.1", L"2001:db8::/33", L"[::1]", L"::/0", L"0.0.0.0/0"})
        ASSERT_TRUE(filter.add(AddressFilter::kRejected, text));
    filter.add(AddressFilter::kPermitted, {10, 0, 0, 1}, {255, 0, 0, 255});
    EXPECT_EQ(textsOf(filter), (Texts{"-10.0.0.0/8 0", "-127.0.0.1/32 0", "-2001:db8::/33 0", "-::1/128 0", "-::/0 0",
                                      "-0.0.0.0/0 0", "+10.0.0.1 & 255.0.0.255 0"}));
}

TEST(AddressFilter, EachRuleCountsTheAddressesItDecidedOn)
{
    zet::TcpServer server;
    ASSERT_TRUE(server.addRejectSubnet(L"10.0.0.0/8"));
    ASSERT_TRUE(server.addRejectSubnet(L"10.1.0.0/16"));
    ASSERT_TRUE(server.addPermissionSubnet(L"10.1.2.0/24"));
    EXPECT_FALSE(permits(server, "10.1.1.1"));
    EXPECT_TRUE(permits(server, "10.1.2.3"));
    EXPECT_TRUE(permits(server, "11.1.1.1"));
    EXPECT_EQ(textsOf(server.getAddressFilter()), (Texts{"-10.0.0.0/8 2", "-10.1.0.0/16 0", "+10.1.2.0/24 1"}));
}

TEST(AddressFilter, AllRulesOfAPortAreReplacedAtOnce)
{
    zet::TcpServer server;
    ASSERT_TRUE(server.addRejectSubnet(L"10.0.0.0/8"));
    AddressFilter filter;
    ASSERT_TRUE(filter.add(AddressFilter::kRejected, L"11.0.0.0/8"));
    server.setAddressFilter(filter);
    EXPECT_TRUE(permits(server, "10.1.1.1"));
    EXPECT_FALSE(permits(server, "11.1.1.1"));
    server.setAddressFilter({});
    EXPECT_TRUE(permits(server, "11.1.1.1"));
}

TEST(AddressFilter, FilesReadAgainReplaceTheirOwnRulesOnly)
{
    const RuleFile rejected("10.0.0.0 255.0.0.0\n11.0.0.0 255.0.0.0\n");
    const RuleFile permitted("10.1.0.0 255.255.0.0\n");
    CFrameworkServerSocket server(L"10.0.0.9", 8000);
    server.AddRejectAddressFrom(rejected.m_Path);
    server.AddPermissionAddressFrom(permitted.m_Path);
    ASSERT_TRUE(server.addRejectSubnet(L"12.0.0.0/8"));
    EXPECT_FALSE(permits(server, "10.2.1.1"));
    EXPECT_FALSE(permits(server, "12.1.1.1"));
    rejected.write("13.0.0.0 255.0.0.0\n10.0.0.0 255.0.0.0\n");
    permitted.write("");
    EXPECT_TRUE(server.ReloadAddressFiles());
    EXPECT_EQ(textsOf(server.getAddressFilter()), (Texts{"-12.0.0.0/8 1", "-13.0.0.0/8 0", "-10.0.0.0/8 1"}));
    EXPECT_FALSE(permits(server, "10.1.1.1"));
}

TEST(AddressFilter, AFileThatDoesNotOpenLeavesTheRulesAsTheyAre)
{
    CFrameworkServerSocket server(L"10.0.0.9", 8000);
    {
        const RuleFile first("10.0.0.0 255.0.0.0\n");
        const RuleFile second("11.0.0.0 255.0.0.0\n");
        server.AddRejectAddressFrom(first.m_Path);
        server.AddRejectAddressFrom(second.m_Path);
        first.write("13.0.0.0 255.0.0.0\n");
        zet::platform::deleteFile(second.m_Path);
        const test::LogLines log;
        EXPECT_FALSE(server.ReloadAddressFiles());
        ASSERT_EQ(log.texts().size(), 1U);
        EXPECT_EQ(log.texts()[0].find(L"Open file"), 0U);
    }
    EXPECT_EQ(textsOf(server.getAddressFilter()), (Texts{"-10.0.0.0/8 0", "-11.0.0.0/8 0"}));
}

} // namespace
