// Figures of a server from its /metrics.
#pragma once

#include "framework/system.h"
#include "net/tcp/stream.h"

#include <functional>
#include <map>
#include <string>

namespace arena::run
{

struct Figures
{
    double m_Memory = 0;
    double m_Transactions = 0;
    // By what is counted: "games".
    std::map<std::string, double> m_Open;
};

// The sums of the figures in an answer of /metrics.
Figures parseFigures(const std::string& answer);

// One request; the callable gets the answer, or the empty text. The System holds the object until then.
class FigureRequest : public zet::TcpStream
{
public:
    using Callback = std::function<void(const std::string& answer)>;

    explicit FigureRequest(Callback callback) : m_Callback(std::move(callback)) {}

    bool begin(zet::System& system, unsigned short port);
    void onTick(unsigned int tick) override;
    void onEnd(const zet::EndCause& cause) override;

private:
    void take();

    Callback m_Callback;
    std::string m_Answer;
};

} // namespace arena::run
