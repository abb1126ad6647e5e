#include "runtime/openmetrics.h"

#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/string_helper.h"
#include "runtime/system_cmd_info.h"

#include <map>
#include <string>

namespace
{

struct Rates
{
    unsigned long long m_Recv = 0;
    unsigned long long m_Send = 0;
};

// The unit is also the suffix of the metric's name; an empty unit is omitted.
void addFamily(std::string& text, const std::string& name, const char* unit, const char* help)
{
    text += "# TYPE " + name + " gauge\n";
    if (*unit)
        text += "# UNIT " + name + ' ' + unit + '\n';
    text += "# HELP " + name + ' ' + help + '\n';
}

void addSample(std::string& text, const std::string& name, const std::string& value)
{
    text += name + ' ' + value + '\n';
}

// A monotonic counter.
void addCounter(std::string& text, const std::string& name, const char* help, unsigned long long value)
{
    text += "# TYPE " + name + " counter\n# HELP " + name + ' ' + help + '\n';
    addSample(text, name + "_total", std::to_string(value));
}

std::string withLabel(const std::string& name, const char* label, const std::string& value)
{
    std::string escaped;
    for (const char unit : value)
    {
        if (unit == '\\' || unit == '"')
            escaped += '\\';
        escaped += unit == '\n' ? std::string("\\n") : std::string(1, unit);
    }
    return name + '{' + label + "=\"" + escaped + "\"}";
}

std::string secondsOf(unsigned long milliseconds)
{
    return zet::formatText("%lu.%03lu", milliseconds / 1000, milliseconds % 1000).getBuffer();
}

} // namespace

zet::String_T<char> convertToOpenMetrics(const SystemCmdInfo& info)
{
    std::string text;

    const std::string memory = "commonground_process_resident_memory_bytes";
    addFamily(text, memory, "bytes", "Working set of the process at the end of its last period, in whole MiB.");
    addSample(text, memory, std::to_string(info.m_Process.m_MemoryMB * (1LL << 20)));

    const std::string tick = "commonground_tick_duration_seconds";
    addFamily(text, tick, "seconds", "Mean length of a tick in the last period.");
    addSample(text, tick, secondsOf(info.m_Process.m_TickTime));

    const std::string connections = "commonground_connections";
    addFamily(text, connections, "", "Current connections.");
    addSample(text, connections, std::to_string(info.m_ConnectCount));

    const std::string operation = "commonground_cmdsop";
    const SystemCmdInfo::CmdOperation& figures = info.m_CmdOperation;
    addFamily(text, operation, "", "Command query figures as the host set them last.");
    addSample(text, withLabel(operation, "figure", "count"), std::to_string(figures.m_Count));
    addSample(text, withLabel(operation, "figure", "query"), std::to_string(figures.m_Query));
    addSample(text, withLabel(operation, "figure", "al"), std::to_string(figures.m_Al));
    addSample(text, withLabel(operation, "figure", "ml"), std::to_string(figures.m_Ml));
    addSample(text, withLabel(operation, "figure", "d1"), std::to_string(figures.m_D1));
    addSample(text, withLabel(operation, "figure", "d2"), std::to_string(figures.m_D2));

    std::map<std::string, Rates> sockets;
    for (const auto& [name, socket] : info.m_SocketTPS)
    {
        Rates& rates = sockets[zet::StringHelper::wideToUtf8(name).getBuffer()];
        rates.m_Recv += socket.m_RecvRate;
        rates.m_Send += socket.m_SendRate;
    }
    if (!sockets.empty())
    {
        const char* unit = "bytes_per_second";
        const std::string received = "commonground_socket_receive_bytes_per_second";
        addFamily(text, received, unit, "Bytes received through a named socket in its last period.");
        for (const auto& [name, rates] : sockets)
            addSample(text, withLabel(received, "socket", name), std::to_string(rates.m_Recv));
        const std::string sent = "commonground_socket_send_bytes_per_second";
        addFamily(text, sent, unit, "Bytes sent through a named socket in its last period.");
        for (const auto& [name, rates] : sockets)
            addSample(text, withLabel(sent, "socket", name), std::to_string(rates.m_Send));
    }

    addCounter(text, "commonground_log_lines_left_out",
               "Log lines about the bytes of peers that were beyond their shares of the log.",
               zet::PeerLog::getLeftOut());
    addCounter(text, "commonground_log_lines_lost", "Log lines that log modules could not write.",
               zet::Log::getLostLines());

    text += "# EOF\n";
    return zet::String_T<char>(text.data(), static_cast<int>(text.size()));
}
