// Figures of a process that one can alert on: those of the library and a host's own, in the OpenMetrics text format.
// docs/operating.md lists the library's.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class CCmdAnalyser;
class CCmdAnalyserSocket;
class CFrameworkServerSocket;
class SystemCmdInfo;
class UdpServerSocket;

namespace host
{

class Inbox;

namespace inner
{
class CommandMetrics;
struct MetricFamilies;
} // namespace inner

// Names and values that distinguish the samples of a family, in the order in which they are printed. UTF-8.
using MetricLabels = std::vector<std::pair<std::string, std::string>>;

// Counts up from 0. Any thread; allocates nothing.
class COMMONGROUND_API MetricCounter
{
public:
    // Adds a number of events. The total wraps at 2^64.
    void add(unsigned long long number = 1) { m_Value.fetch_add(number, std::memory_order_relaxed); }
    // The total so far.
    unsigned long long get() const { return m_Value.load(std::memory_order_relaxed); }

private:
    std::atomic<unsigned long long> m_Value{0};
};

// A value that goes up and down. Any thread; allocates nothing.
class COMMONGROUND_API MetricGauge
{
public:
    // Replaces the value, or changes it by a difference, which may be negative.
    void set(double value) { m_Value.store(value, std::memory_order_relaxed); }
    void add(double value);
    // The present value.
    double get() const { return m_Value.load(std::memory_order_relaxed); }

private:
    std::atomic<double> m_Value{0};
};

// Counts values by the first of its bounds that is not below them. Any thread; allocates nothing.
class COMMONGROUND_API MetricHistogram
{
public:
    // Ascending bounds.
    explicit MetricHistogram(std::vector<double> bounds);

    // Counts one value.
    void add(double value);
    // Those of the constructor.
    const std::vector<double>& getBounds() const { return m_Bounds; }
    // The number of values of each bound, and last of those above all.
    std::vector<unsigned long long> getCounts() const;
    double getSum() const { return m_Sum.get(); }

private:
    const std::vector<double> m_Bounds;
    const std::unique_ptr<std::atomic<unsigned long long>[]> m_Counts;
    MetricGauge m_Sum;
};

// Takes the samples of one scrape. Counters are named without the suffix "_total", which is added.
class COMMONGROUND_API MetricText
{
public:
    // Starts a family; its samples follow. A unit, such as "bytes" or "seconds", must be the suffix of the name.
    void beginCounter(const std::string& name, const std::string& help, const char* unit = "");
    void beginGauge(const std::string& name, const std::string& help, const char* unit = "");
    void beginHistogram(const std::string& name, const std::string& help, const char* unit = "");
    void add(const MetricLabels& labels, unsigned long long value);
    void add(const MetricLabels& labels, double value);
    // The counts are those of MetricHistogram.
    void add(const MetricLabels& labels, const std::vector<double>& bounds,
             const std::vector<unsigned long long>& counts, double sum);

    // Adds the families of another text.
    void append(const MetricText& other) { m_Text += other.m_Text; }
    // The families so far, without the end of the format.
    const std::string& get() const { return m_Text; }

private:
    void begin(const char* type, const std::string& name, const std::string& help, const char* unit);
    void addSample(const std::string& suffix, const MetricLabels& labels, const std::string& value);

    std::string m_Text;
    std::string m_Name;
    bool m_IsCounter = false;
};

// What a listening port reports. A port leaves out what it does not know.
struct ListenerFigures
{
    using Value = std::optional<unsigned long long>;

    // Counts since the start, by a word for the reason: "filter" or "cap", and the cause of an end.
    std::map<std::string, unsigned long long> m_Refused;
    std::map<std::string, unsigned long long> m_Ended;
    Value m_Accepted;
    // TLS or QUIC handshakes of peers: completed, and failed or not completed.
    Value m_Handshakes;
    Value m_HandshakesFailed;
    Value m_BytesIn;
    Value m_BytesOut;
    Value m_DatagramsIn;
    Value m_DatagramsOut;
    Value m_DatagramsDropped;
    // Sent packets of connections that were declared lost.
    Value m_PacketsLost;
    // Now.
    Value m_Connections;
    Value m_QueuedBytes;
    // The mean of its connections.
    std::optional<double> m_RoundTripSeconds;
};

// The figures of a process. While it is off, the default, it watches nothing and costs nothing.
//
// OWNERSHIP: it owns the counters, gauges and histograms that it returns. What is watched must live as long as this
// object, except analysers. THREADS: the three kinds of figures, and the commands of watched analysers, may be counted
// on any thread; all else belongs to the thread that calls getText(), for a Service that of its System.
class COMMONGROUND_API Metrics
{
public:
    // A service makes its own, off.
    explicit Metrics(bool isOn = true);
    ~Metrics();
    Metrics(const Metrics&) = delete;
    Metrics& operator=(const Metrics&) = delete;

    // Whether watch() of an analyser counts its commands.
    bool isOn() const { return m_IsOn; }
    // Before anything is watched.
    void setOn(bool isOn) { m_IsOn = isOn; }

    // A figure of the host: the same object for the same name and labels, in any order. A name consists of letters of
    // ASCII, digits and '_', starts with a letter, not with "commonground_" or "process_", and does not end with
    // "_total". The name of a label may also start with one '_'; it is given once, and "le" is reserved in histograms.
    // A name that is not valid, or that another kind of figure has, is logged once; the figure returned is one for all
    // such names, and not printed.
    MetricCounter& counter(const std::string& name, const std::string& help, const MetricLabels& labels = {});
    MetricGauge& gauge(const std::string& name, const std::string& help, const MetricLabels& labels = {});
    // All histograms of a name have the bounds of the first one.
    MetricHistogram& histogram(const std::string& name, const std::string& help, const std::vector<double>& bounds,
                               const MetricLabels& labels = {});
    // Called by each getText() to print families of its own, such as those filled from other statistics.
    void addPrinter(std::function<void(MetricText&)> print);

    // Counts the commands that the analyser dispatches and that sockets with this analyser send. Before it is used.
    void watch(CCmdAnalyserSocket& analyser);
    // The same for a UdpClientSocket, each of which has an analyser of its own, and for CNetSession.
    void watch(CCmdAnalyser& analyser);
    // Prints the figures of a port under a name.
    void watch(const std::string& name, CFrameworkServerSocket& server);
    void watch(const std::string& name, UdpServerSocket& server);
    void watch(const std::string& name, std::function<ListenerFigures()> figures);
    // Prints the calls that wait in an inbox and those that it refused, under a name.
    void watch(const std::string& name, const Inbox& inbox);
    // Prints the required statistics, too.
    void watch(const SystemCmdInfo& info);

    // For each tick of a System: its length and how much later than planned it began, in seconds.
    void addTick(double length, double lag);

    // All figures, UTF-8, in the OpenMetrics text format, which ends with "# EOF".
    zet::String_T<char> getText() const;
    // The same in the older text format of Prometheus (version 0.0.4).
    zet::String_T<char> getPlainText() const;

    // Bounds for durations, in seconds: 10 us to 1 s.
    static const std::vector<double>& getDurationBounds();

private:
    template <class Analyser>
    void observe(Analyser& analyser);

    bool m_IsOn;
    std::shared_ptr<inner::CommandMetrics> m_Commands;
    const std::unique_ptr<inner::MetricFamilies> m_Families;
};

} // namespace host
