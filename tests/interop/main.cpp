// Two processes, possibly of different systems, talk over the loopback, and each checks what it receives:
//   interop host 16|32 GOLDEN          listens, prints its port, and serves one client
//   interop visitor 16|32 GOLDEN PORT  the client: registers, greets, logs in, and sends texts in tunnels
//   interop lines GOLDEN               prints every golden vector in both widths, as lines for wirelens read
// The number is the width of the other side's characters, GOLDEN the folder of the golden vectors. Returns 0 if
// everything was as expected.
#include "framework/log.h"
#include "framework/string_helper.h"
#include "tests/interop/party.h"
#include "tools/object_json.h"
#include "transport/framework_server_socket.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

using interop::Host;
using interop::Party;
using interop::Visitor;

constexpr wchar_t kLoopback[] = L"127.0.0.1";

class Port : public CFrameworkServerSocket
{
public:
    explicit Port(Party& party) : CFrameworkServerSocket(kLoopback, 0), m_Party(party) {}
    void onAccept() override
    {
        const zet::Unknown::Handle_T<Host> host(new Host(m_Party));
        m_Party.check(accept(host.get()), "the client is accepted");
    }

private:
    Party& m_Party;
};

int runHost(Party& party)
{
    Host::install(party.getAnalyser());
    const zet::Unknown::Handle_T<Port> port(new Port(party));
    if (!port->start(&party) || !port->listen(0, 1))
        return 1;
    party.say("listening on port " + std::to_string(port->getPort()));
    party.run();
    port->close();
    return party.getResult();
}

int runVisitor(Party& party, unsigned short port)
{
    Visitor::install(party.getAnalyser());
    const zet::Unknown::Handle_T<Visitor> visitor(new Visitor(party));
    if (!visitor->start(&party) || !visitor->connect(kLoopback, port, false) || !visitor->begin())
        return 1;
    party.run();
    visitor->close();
    visitor->stop();
    return party.getResult();
}

int sayLines(const std::string& goldenFolder)
{
    const golden::Book book(goldenFolder);
    for (const golden::Vector& vector : book.all())
        for (const golden::Width width : {golden::Width::k16, golden::Width::k32})
        {
            // The head is not a separate class.
            if (vector.m_Name == "head" || (width == golden::Width::k16 ? !vector.m_Has16 : !vector.m_Has32))
                continue;
            const std::string bytes = book.bytes(vector, width);
            std::printf("%s %s %s\n", vector.m_Class.c_str(), vector.m_Form.c_str(),
                        bytes.empty() ? "-" : tools::hexOf(bytes.data(), bytes.size()).c_str());
        }
    return 0;
}

} // namespace

int main(int count, char** words)
{
    const std::string role = count > 1 ? words[1] : "";
    if (role == "lines" && count == 3)
        return sayLines(words[2]);
    if (!(role == "host" && count == 4) && !(role == "visitor" && count == 5))
    {
        std::fputs("usage: interop host 16|32 GOLDEN | interop visitor 16|32 GOLDEN PORT | interop lines GOLDEN\n",
                   stderr);
        return 2;
    }
    zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& line)
                      { std::fprintf(stderr, "%s\n", zet::StringHelper::wideToUtf8(line.getBuffer()).getBuffer()); });
    const golden::Width peer = std::string(words[2]) == "16" ? golden::Width::k16 : golden::Width::k32;
    const zet::Unknown::Handle_T<Party> party(new Party(role.c_str(), peer, words[3]));
    return role == "host" ? runHost(*party) : runVisitor(*party, static_cast<unsigned short>(std::atoi(words[4])));
}
