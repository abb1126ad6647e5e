#include "runtime/openmetrics.h"

#include "framework/log.h"
#include "framework/peer_log.h"
#include "runtime/system_cmd_info.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

std::string textOf(const SystemCmdInfo& info)
{
    const zet::String_T<char> text = convertToOpenMetrics(info);
    return {text.getBuffer(), static_cast<size_t>(text.getLength())};
}

size_t countOf(const std::string& text, const std::string& part)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

} // namespace

TEST(OpenMetrics, ExpositionByteForByte)
{
    SystemCmdInfo info;
    info.m_Process.m_MemoryMB = 3;
    info.m_Process.m_TickTime = 16;
    info.m_ConnectCount = 2;
    info.SetCmdQuery(1, 4294967295UL, -3, 4, 5, 6);
    info.m_SocketTPS[L"gate"].m_RecvRate = 1536;
    info.m_SocketTPS[L"gate"].m_SendRate = 7;
    info.m_SocketTPS[L"zone"].m_SendRate = 4294967295UL;
    EXPECT_EQ(textOf(info), R"(# TYPE commonground_process_resident_memory_bytes gauge
# UNIT commonground_process_resident_memory_bytes bytes
# HELP commonground_process_resident_memory_bytes Working set of the process at the end of its last period, in whole MiB.
commonground_process_resident_memory_bytes 3145728
# TYPE commonground_tick_duration_seconds gauge
# UNIT commonground_tick_duration_seconds seconds
# HELP commonground_tick_duration_seconds Mean length of a tick in the last period.
commonground_tick_duration_seconds 0.016
# TYPE commonground_connections gauge
# HELP commonground_connections Current connections.
commonground_connections 2
# TYPE commonground_cmdsop gauge
# HELP commonground_cmdsop Command query figures as the host set them last.
commonground_cmdsop{figure="count"} 1
commonground_cmdsop{figure="query"} 4294967295
commonground_cmdsop{figure="al"} -3
commonground_cmdsop{figure="ml"} 4
commonground_cmdsop{figure="d1"} 5
commonground_cmdsop{figure="d2"} 6
# TYPE commonground_socket_receive_bytes_per_second gauge
# UNIT commonground_socket_receive_bytes_per_second bytes_per_second
# HELP commonground_socket_receive_bytes_per_second Bytes received through a named socket in its last period.
commonground_socket_receive_bytes_per_second{socket="gate"} 1536
commonground_socket_receive_bytes_per_second{socket="zone"} 0
# TYPE commonground_socket_send_bytes_per_second gauge
# UNIT commonground_socket_send_bytes_per_second bytes_per_second
# HELP commonground_socket_send_bytes_per_second Bytes sent through a named socket in its last period.
commonground_socket_send_bytes_per_second{socket="gate"} 7
commonground_socket_send_bytes_per_second{socket="zone"} 4294967295
# TYPE commonground_log_lines_left_out counter
# HELP commonground_log_lines_left_out Log lines about the bytes of peers that were beyond their shares of the log.
commonground_log_lines_left_out_total )" +
                                std::to_string(zet::PeerLog::getLeftOut()) +
                                R"(
# TYPE commonground_log_lines_lost counter
# HELP commonground_log_lines_lost Log lines that log modules could not write.
commonground_log_lines_lost_total )" +
                                std::to_string(zet::Log::getLostLines()) +
                                R"(
# EOF
)");
}

TEST(OpenMetrics, WithoutSocketsThereAreNoSocketFamilies)
{
    const std::string text = textOf(SystemCmdInfo());
    EXPECT_EQ(countOf(text, "socket"), 0u);
    EXPECT_EQ(countOf(text, "# TYPE"), 6u);
    EXPECT_EQ(text.substr(text.size() - 7), "\n# EOF\n");
}

TEST(OpenMetrics, LabelsAreEscaped)
{
    SystemCmdInfo info;
    info.m_SocketTPS[L"a\"b\\c\nd\u5927"].m_RecvRate = 5;
    EXPECT_EQ(countOf(textOf(info), "{socket=\"a\\\"b\\\\c\\nd\xE5\xA4\xA7\"} 5\n"), 1u);
}

TEST(OpenMetrics, NoSeriesAppearsTwice)
{
    // Both names contain an invalid unit and are printed with the same replacement character.
    const wchar_t first[] = {L'a', static_cast<wchar_t>(0xD800), L'\0'};
    const wchar_t second[] = {L'a', static_cast<wchar_t>(0xDC00), L'\0'};
    SystemCmdInfo info;
    info.m_SocketTPS[first].m_RecvRate = 4294967295UL;
    info.m_SocketTPS[second].m_RecvRate = 2;
    ASSERT_EQ(info.m_SocketTPS.size(), 2u);
    const std::string text = textOf(info);
    EXPECT_EQ(countOf(text, "receive_bytes_per_second{"), 1u);
    EXPECT_EQ(countOf(text, "{socket=\"a\xEF\xBF\xBD\"} 4294967297\n"), 1u);
}

TEST(OpenMetrics, MillisecondsAreThreeDigitsOfASecond)
{
    SystemCmdInfo info;
    info.m_Process.m_TickTime = 60001;
    EXPECT_EQ(countOf(textOf(info), "commonground_tick_duration_seconds 60.001\n"), 1u);
    info.m_Process.m_TickTime = 4294967295UL;
    EXPECT_EQ(countOf(textOf(info), "commonground_tick_duration_seconds 4294967.295\n"), 1u);
}
