// wirelens serve: a stand-in for a server, with scripted answers.
#include "dispatch/analyser_socket.h"
#include "framework/string_helper.h"
#include "tools/frame_reader.h"
#include "tools/serve_script.h"
#include "tools/wirelens/live.h"
#include "tools/wirelens/options.h"
#include "transport/framework_server_socket.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <fstream>
#include <iostream>
#include <sstream>

namespace wirelens
{

namespace
{

struct ServeOptions
{
    unsigned short m_Port = 0;
    std::string m_Address = "127.0.0.1";
    std::string m_Script;
    std::string m_Certificate;
    std::string m_Key;
};

// One client. Prints what it sends, and answers.
class Client final : public CFrameworkClientSocket
{
public:
    Client(CCmdAnalyserSocket& analyser, const tools::ServeScript& script)
        : CFrameworkClientSocket(&analyser), m_Script(script)
    {
    }

    void take(const CCmdPackager& command);

private:
    const tools::ServeScript& m_Script;
};

void Client::take(const CCmdPackager& command)
{
    tools::JsonText line;
    line.put("{\"connection\":");
    line.addText(narrowed(getPeerName()));
    line.put(',');
    tools::addCommand(line, command, true);
    line.put('}');
    std::cout << line.view() << std::endl;
    const auto encoded = std::make_unique<tools::EncodedLine>();
    for (const auto& answer : m_Script.answersTo(nlohmann::ordered_json::parse(line.view())))
    {
        std::string fault = tools::encodeJson(answer, tools::kNativeWidth, *encoded);
        if (fault.empty() && !send(encoded->m_Command))
            fault = "the answer was not sent";
        if (!fault.empty())
            std::cerr << "wirelens: " << fault << std::endl;
    }
}

class Server final : public CFrameworkServerSocket
{
public:
    Server(const tools::ServeScript& script, unsigned short port)
        : CFrameworkServerSocket(L"", port), m_Script(script),
          m_Analyser([](CCommandSocket* socket, CCmdPackager* command, unsigned long, unsigned long)
                     { static_cast<Client*>(socket)->take(*command); })
    {
    }
    ~Server() override { close(); }

    void onAccept() override { accept(zet::Unknown::Handle_T<Client>(new Client(m_Analyser, m_Script))); }

private:
    const tools::ServeScript& m_Script;
    CCmdAnalyserSocket m_Analyser;
};

int serve(const ServeOptions& options)
{
    std::ifstream file(options.m_Script, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    tools::ServeScript script;
    const std::string fault = file ? script.parse(text.str()) : "it cannot be read";
    if (!fault.empty())
    {
        std::cerr << "wirelens: " << options.m_Script << ": " << fault << "\n";
        return 1;
    }
    catchInterrupts();
    zet::System system;
    const zet::Unknown::Handle_T<Server> server(new Server(script, options.m_Port));
    if (!options.m_Certificate.empty())
    {
        const auto context = serverContext(options.m_Certificate, options.m_Key);
        if (!context || !server->setTlsContext(context))
            return 1;
    }
    const auto address = zet::StringHelper::utf8ToWide(options.m_Address.c_str());
    if (!server->setBindAddress(address.getBuffer()))
    {
        std::cerr << "wirelens: " << options.m_Address << " is not an address\n";
        return 2;
    }
    if (!server->start(&system) || !server->listen(options.m_Port, 0))
        return 1;
    std::cerr << "wirelens: listening on port " << server->getPort() << std::endl;
    return runLoop(system, [] { return isInterrupted() ? std::optional<int>(0) : std::nullopt; });
}

} // namespace

void addServe(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<ServeOptions>();
    CLI::App* const command = addCommand(
        app, "serve", "a stand-in for a server: prints what it gets, with scripted answers",
        "SCRIPT is a JSON file with an array of rules. The first rule that fits a command gives its answers:\n"
        "  [{\"class\": \"CCmdServerEcho\", \"if\": [\"m_Data > 5\"],\n"
        "    \"answers\": [{\"class\": \"CCmdServerEchoReply\", \"fields\": {}, \"echo\": [\"m_Data\", "
        "\"m_ClientIndex\"]}]}]\n"
        "\"if\" has tests as decode's --field, all of which have to hold. \"echo\" names fields of the command that "
        "the\n"
        "answer gets, or is an object of the answer's fields and the command's: {\"m_Data\": \"m_Data\"}.\n"
        "Each command is printed as decode does, with the connection. Runs until it is interrupted.");
    command->add_option("--port", options->m_Port, "to listen on; 0 takes a free one, which is printed")
        ->type_name("PORT")
        ->required();
    command
        ->add_option("--address", options->m_Address, "of this machine to listen on; 127.0.0.1 unless given, :: is all")
        ->type_name("ADDRESS");
    CLI::Option* const certificate =
        command->add_option("--certificate", options->m_Certificate, "by TLS, with this certificate (PEM)")
            ->type_name("FILE");
    CLI::Option* const key =
        command->add_option("--key", options->m_Key, "its private key (PEM)")->type_name("FILE")->needs(certificate);
    certificate->needs(key);
    command->add_option("SCRIPT", options->m_Script)->required();
    command->callback([options, &chosen] { chosen = [options] { return serve(*options); }; });
}

} // namespace wirelens
