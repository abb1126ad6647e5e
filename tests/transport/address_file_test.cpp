#include "transport/address_file.h"

#include "framework/app.h"
#include "framework/platform/platform.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"

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

bool permits(zet::TcpServer& server, const char* text)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = zet::Socket::inet_addr(text);
    return server.permission(address);
}

// A file that is deleted with the object.
class TempFile
{
public:
    explicit TempFile(const std::string& content)
        : m_Path(zet::platform::createTempFile(zet::platform::getTempDirectory()))
    {
        std::FILE* const file = zet::platform::openFile(m_Path, "wb");
        std::fwrite(content.data(), 1, content.size(), file);
        std::fclose(file);
    }
    ~TempFile() { zet::platform::deleteFile(m_Path); }

    zet::String_T<wchar_t> m_Path;
};

std::vector<std::string> rulesOf(const std::string& content)
{
    const TempFile file(content);
    std::vector<std::string> rules;
    EXPECT_TRUE(ReadAddressFile(file.m_Path,
                                [&](const AddressRule& rule)
                                {
                                    std::string text;
                                    for (const unsigned char byte : rule.m_Address)
                                        text += std::to_string(byte) + ".";
                                    for (const unsigned char byte : rule.m_Mask)
                                        text += std::to_string(byte) + ".";
                                    rules.push_back(text);
                                }));
    return rules;
}

using Rules = std::vector<std::string>;

TEST(AddressFile, ARuleIsAnAddressAndAMask)
{
    EXPECT_EQ(rulesOf("192.168.0.0 255.255.0.0\n"), (Rules{"192.168.0.0.255.255.0.0."}));
    EXPECT_EQ(rulesOf("  1.2.3.4\t \t5.6.7.8  \r\n"), (Rules{"1.2.3.4.5.6.7.8."}));
}

TEST(AddressFile, EmptyLinesAndCommentsArePassedOver)
{
    EXPECT_EQ(rulesOf("\n   \n# 10.0.0.0 255.0.0.0\n  # 10.0.0.0 255.0.0.0\n\t\n"), Rules());
    EXPECT_EQ(rulesOf(""), Rules());
}

TEST(AddressFile, TextAfterTheSecondWordIsIgnored)
{
    EXPECT_EQ(rulesOf("10.0.0.0 255.0.0.0 our office # here\n"), (Rules{"10.0.0.0.255.0.0.0."}));
}

TEST(AddressFile, InvalidLinesAreSkipped)
{
    EXPECT_EQ(rulesOf("10.0.0.0\n10.0.0 255.0.0.0\n10.0.0.0 255.0.0\nhost.name.of.ours 255.0.0.0\n10.0.0.0,255.0.0.0\n"
                      "10.0.0.-1 255.0.0.0\n10..0.0 255.0.0.0\n10.0.0.0x 255.0.0.0\n10.0.0.0.0 255.0.0.0\n"
                      "1.2.3.4 5.6.7.8\n"),
              (Rules{"1.2.3.4.5.6.7.8."}));
}

TEST(AddressFile, TheLastLineMayLackItsEnd)
{
    EXPECT_EQ(rulesOf("1.1.1.1 2.2.2.2\n3.3.3.3 4.4.4.4"), (Rules{"1.1.1.1.2.2.2.2.", "3.3.3.3.4.4.4.4."}));
}

TEST(AddressFile, OfANumberAbove255TheLowByteCounts)
{
    EXPECT_EQ(rulesOf("256.257.511.99999999999999999999 0.0.0.0\n").size(), 1U);
    EXPECT_EQ(rulesOf("256.257.511.0 0.0.0.0\n"), (Rules{"0.1.255.0.0.0.0.0."}));
}

TEST(AddressFile, ALongLineIsReadInPiecesOf1023Bytes)
{
    // The rule at the start is read, and so is any rule at the start of a piece.
    const std::string padding(1023 - 17, ' ');
    EXPECT_EQ(rulesOf("1.2.3.4 255.0.0.0" + padding + "5.6.7.8 255.0.0.0\n"),
              (Rules{"1.2.3.4.255.0.0.0.", "5.6.7.8.255.0.0.0."}));
}

TEST(AddressFile, AMissingFileIsFalse)
{
    int calls = 0;
    EXPECT_FALSE(ReadAddressFile(L"no such file", [&](const AddressRule&) { ++calls; }));
    EXPECT_EQ(calls, 0);
}

TEST(FrameworkServerSocket, AddsTheRejectedAddressesOfAFile)
{
    CFrameworkServerSocket server(L"10.0.0.9", 8000);
    const TempFile file("# ours\n10.0.0.0 255.0.0.0\nnonsense\n192.168.1.1 255.255.255.255");
    test::LogLines lines;
    server.AddRejectAddressFrom(file.m_Path);
    const std::wstring path = file.m_Path.getBuffer();
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"Install Reject Address(10.0.0.9:8000)...(" + path + L")",
                                                        L"Reject Address: 10.0.0.0 & 255.0.0.0",
                                                        L"Reject Address: 192.168.1.1 & 255.255.255.255"}));
    EXPECT_TRUE(lines.has(zet::Log::kMessage, L"Reject Address: 10.0.0.0 & 255.0.0.0"));
    EXPECT_FALSE(permits(server, "10.255.3.4"));
    EXPECT_FALSE(permits(server, "192.168.1.1"));
    EXPECT_TRUE(permits(server, "192.168.1.2"));
}

TEST(FrameworkServerSocket, AddsThePermittedAddressesOfAFileToThoseThereAre)
{
    CFrameworkServerSocket server(L"10.0.0.9", 8000);
    const TempFile rejected("0.0.0.0 0.0.0.0");
    const TempFile permitted("10.0.0.0 255.0.0.0");
    const TempFile more("11.0.0.0 255.0.0.0");
    server.AddRejectAddressFrom(rejected.m_Path);
    test::LogLines lines;
    server.AddPermissionAddressFrom(permitted.m_Path);
    const std::wstring path = permitted.m_Path.getBuffer();
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"安装网络接受地址(10.0.0.9:8000)...(" + path + L")",
                                                        L"网络接受地址 10.0.0.0 & 255.0.0.0"}));
    server.AddPermissionAddressFrom(more.m_Path);
    EXPECT_TRUE(permits(server, "10.1.1.1"));
    EXPECT_TRUE(permits(server, "11.1.1.1"));
    EXPECT_FALSE(permits(server, "12.1.1.1"));
}

TEST(FrameworkServerSocket, AMissingFileCostsAWarning)
{
    CFrameworkServerSocket server(L"10.0.0.9", 8000);
    test::LogLines lines;
    server.AddRejectAddressFrom(L"no such file");
    server.AddPermissionAddressFrom(L"no such file");
    const std::wstring reason = zet::getErrorString(2).getBuffer();
    EXPECT_TRUE(lines.has(zet::Log::kWarning, L"Open file 'no such file' error，description(" + reason + L")"));
    EXPECT_TRUE(lines.has(zet::Log::kWarning, L"打开文件 'no such file' 出错，错误描述(" + reason + L")"));
    EXPECT_EQ(lines.texts().size(), 4U);
}

} // namespace
