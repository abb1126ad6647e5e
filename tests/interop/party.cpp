#include "tests/interop/party.h"

#include "examples/arena/deliver.h"
#include "framework/log.h"
#include "framework/time.h"
#include "packaging/cmd_packager.h"
#include "tools/class_table.h"
#include "tools/object_json.h"

#include <cstdio>

namespace interop
{

namespace
{

// Milliseconds for the whole conversation.
constexpr unsigned int kPatience = 60000;
constexpr wchar_t kVisitorName[] = L"visitor \u8BBF\u5BA2";
constexpr wchar_t kHostName[] = L"host \u4E3B\u673A";
constexpr unsigned long kEchoed = 0xFEDCBA98;
constexpr unsigned short kIndex = 0x0107;

// The head in the frame of a text: version, index, no address and no account.
const std::string kHead = std::string("\x00\x02\x01\x07", 4) + std::string(17, '\0');

void fillRecord(CCmdServerRegister& record, const wchar_t* name)
{
    record.m_ServerType = 9;
    record.m_ServerId = {0x01020304, 0x05060708, 0x090A, {}};
    record.m_ServerName = name;
    record.m_ServerAddress[0] = L"127.0.0.1";
    record.m_ServerAddress[1] = L"second";
    record.m_ServerAddress[2] = L"third";
    record.m_ServerPort = 4000;
}

bool isRecord(const CCmdServerRegister& record, const wchar_t* name)
{
    CCmdServerRegister expected;
    fillRecord(expected, name);
    return record.m_ServerType == expected.m_ServerType && record.m_ServerId == expected.m_ServerId &&
           record.m_ServerName == expected.m_ServerName && record.m_ServerPort == expected.m_ServerPort &&
           record.m_ServerAddress[0] == expected.m_ServerAddress[0] &&
           record.m_ServerAddress[1] == expected.m_ServerAddress[1] &&
           record.m_ServerAddress[2] == expected.m_ServerAddress[2];
}

CCmdServerRegisterFail commandOf(const Text& text)
{
    CCmdServerRegisterFail command;
    command.SetClientIndex(kIndex);
    command.m_Msg = nativeText(text);
    return command;
}

} // namespace

Party::Party(const char* name, Width peer, const std::string& goldenFolder)
    : m_Name(name), m_Peer(peer), m_Book(goldenFolder), m_End(zet::getTimeTick() + kPatience)
{
}

void Party::onTick(unsigned int tick)
{
    if (static_cast<int>(tick - m_End) < 0)
        return;
    check(false, "the conversation ends in time");
    shutdown();
}

void Party::say(const std::string& line) const
{
    std::printf("%s: %s\n", m_Name.c_str(), line.c_str());
    std::fflush(stdout);
}

void Party::check(bool fact, const std::string& line)
{
    say((fact ? "good: " : "FAULT: ") + line);
    m_Faults += fact ? 0 : 1;
}

void Party::finish()
{
    m_IsFinished = true;
    say("finished with " + std::to_string(m_Faults) + " faults");
    shutdown();
}

void Party::fill(CCmdHead& command, const char* className) const
{
    const std::string bytes = m_Book.bytes(m_Book.find(className, "cmd", "full"), golden::kNative);
    CCmdPackager packager;
    packager.SetCmdID(command.GetID());
    if (!packager.Write(bytes.data(), static_cast<int>(bytes.size())) || !command.Read(&packager))
        throw std::runtime_error(std::string("the golden vector is not read: ") + className);
}

void Party::checkGolden(const CCmdHead& command, const char* className)
{
    const tools::ClassInfo* const info = tools::findClass(className);
    const std::shared_ptr<void> expected = info->make();
    fill(*static_cast<CCmdHead*>(expected.get()), className);
    const std::string wanted = tools::objectJson(info->m_Wire(), expected.get()).dump();
    const std::string got = tools::objectJson(info->m_Wire(), &command).dump();
    check(wanted == got, std::string(className) + " holds what was sent, " + std::to_string(got.size()) +
                             " characters as JSON" + (wanted == got ? "" : ":\n" + got + "\nnot\n" + wanted));
}

Speaker::Speaker(Party& party) : CFrameworkClientSocket(&party.getAnalyser()), m_Party(party)
{
    for (const Text& text : texts())
        if (isTaken(text, party.getPeer()))
            m_Expected.insert(m_Expected.end(), 2, &text);
}

void Speaker::installTexts(CCmdAnalyserSocket& analyser)
{
    ARENA_HANDLE(analyser, CCmdServerRegisterFail, &Speaker::onText);
}

void Speaker::onTick(unsigned int tick)
{
    const bool stood = getConnectionState() == kEstablished;
    CFrameworkClientSocket::onTick(tick);
    if (stood && isInvalid())
        m_Party.shutdown();
}

template <class Tunnel>
void Speaker::recite(bool (*wrap)(CCmdHead*, Tunnel*))
{
    for (const Text& text : texts())
    {
        CCmdServerRegisterFail command = commandOf(text);
        Tunnel tunnel;
        m_Party.check(wrap(&command, &tunnel) && send(tunnel) && send(command), "sent a text of " + text.m_Name);
    }
}

void Speaker::openTunnel(const zet::Buffer& frame)
{
    const bool isExpected = m_Frames < texts().size();
    m_Party.check(isExpected, "one of the tunnels that are due");
    if (!isExpected)
        return;
    const Text& text = texts()[m_Frames++];
    CCmdPackager packager;
    m_Party.check(CCmdPackager_bufferToPackage(frame, packager), "a whole frame in the tunnel of " + text.m_Name);
    const std::string payload(reinterpret_cast<const char*>(packager.GetBuffer()),
                              static_cast<size_t>(packager.GetDataSize()));
    m_Party.check(payload == kHead + wireForm(text, m_Party.getPeer()),
                  "the bytes of the writer's width for " + text.m_Name);
    const size_t heard = m_Heard;
    const bool isTakenHere = m_Party.getAnalyser().Analyse(this, packager);
    const bool isTakenByRule = isTaken(text, m_Party.getPeer());
    m_Party.check(isTakenHere == isTakenByRule && m_Heard - heard == (isTakenByRule ? 1 : 0),
                  text.m_Name + (isTakenByRule ? " reach the handler" : " are refused"));
}

void Speaker::onText(const CCmdServerRegisterFail& command)
{
    const bool isExpected = m_Heard < m_Expected.size();
    m_Party.check(isExpected, "one of the texts that are due");
    if (!isExpected)
        return;
    const Text& text = *m_Expected[m_Heard++];
    m_Party.check(valuesOf(command.m_Msg) == readValues(text, m_Party.getPeer(), golden::kNative),
                  "the characters of " + text.m_Name);
}

void Speaker::checkAllHeard()
{
    m_Party.check(m_Frames == texts().size() && m_Heard == m_Expected.size(),
                  "heard " + std::to_string(m_Heard) + " texts and " + std::to_string(m_Frames) + " tunnels, of " +
                      std::to_string(m_Expected.size()) + " and " + std::to_string(texts().size()));
}

void Host::install(CCmdAnalyserSocket& analyser)
{
    installTexts(analyser);
    ARENA_HANDLE(analyser, CCmdServerRegister, &Host::onRegister);
    ARENA_HANDLE(analyser, CCmdServerHello, &Host::onHello);
    ARENA_HANDLE(analyser, CCmdLogin, &Host::onLogin);
    ARENA_HANDLE(analyser, CCmdLogout, &Host::onLogout);
    ARENA_HANDLE(analyser, CCmdGZ_clientToServer, &Host::onTunnel);
    ARENA_HANDLE(analyser, CCmdServerEcho, &Host::onEcho);
}

void Host::onRegister(const CCmdServerRegister& command)
{
    m_Party.check(isRecord(command, kVisitorName), "the registration names the client");
    CCmdServerRegisterSuccess success;
    success.m_ServerId = command.m_ServerId;
    send(success);
}

void Host::onHello(const CCmdServerHello& command)
{
    m_Party.check(isRecord(command, kVisitorName), "the greeting names the client");
    CCmdServerHelloReply reply;
    fillRecord(reply, kHostName);
    send(reply);
}

void Host::onLogin(const CCmdLogin& command)
{
    m_Party.checkGolden(command, "CCmdLogin");
    send(m_Party.golden<CCmdLoginSuccess>("CCmdLoginSuccess"));
}

void Host::onLogout(const CCmdLogout& command)
{
    m_Party.checkGolden(command, "CCmdLogout");
}

void Host::onTunnel(const CCmdGZ_clientToServer& command)
{
    openTunnel(command.m_Data1);
}

void Host::onEcho(const CCmdServerEcho& command)
{
    checkAllHeard();
    recite<CCmdGZ_serverToClient>(toCCmdGZ_serverToClient);
    CCmdServerEchoReply reply;
    reply.m_Data = command.m_Data;
    send(reply);
    // The client closes the connection, and with it this side ends.
    m_Party.expectEnd();
}

void Visitor::install(CCmdAnalyserSocket& analyser)
{
    installTexts(analyser);
    ARENA_HANDLE(analyser, CCmdServerRegisterSuccess, &Visitor::onRegistered);
    ARENA_HANDLE(analyser, CCmdServerHelloReply, &Visitor::onHello);
    ARENA_HANDLE(analyser, CCmdLoginSuccess, &Visitor::onLogin);
    ARENA_HANDLE(analyser, CCmdGZ_serverToClient, &Visitor::onTunnel);
    ARENA_HANDLE(analyser, CCmdServerEchoReply, &Visitor::onEcho);
}

bool Visitor::begin()
{
    CCmdServerRegister command;
    fillRecord(command, kVisitorName);
    return send(command);
}

void Visitor::onRegistered(const CCmdServerRegisterSuccess& command)
{
    CCmdServerHello hello;
    fillRecord(hello, kVisitorName);
    m_Party.check(command.m_ServerId == hello.m_ServerId, "registered under the own id");
    send(hello);
}

void Visitor::onHello(const CCmdServerHelloReply& command)
{
    m_Party.check(isRecord(command, kHostName), "the host greets back");
    send(m_Party.golden<CCmdLogin>("CCmdLogin"));
}

void Visitor::onLogin(const CCmdLoginSuccess& command)
{
    m_Party.checkGolden(command, "CCmdLoginSuccess");
    recite<CCmdGZ_clientToServer>(toCCmdGZ_clientToServer);
    send(m_Party.golden<CCmdLogout>("CCmdLogout"));
    CCmdServerEcho echo;
    echo.m_Data = kEchoed;
    send(echo);
}

void Visitor::onTunnel(const CCmdGZ_serverToClient& command)
{
    openTunnel(command.m_Data1);
}

void Visitor::onEcho(const CCmdServerEchoReply& command)
{
    m_Party.check(command.m_Data == kEchoed, "the echo comes back");
    checkAllHeard();
    m_Party.finish();
}

} // namespace interop
