#include "examples/arena/page/role_page.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/roles.h"
#include "host/service.h"

namespace arena
{

int runPlatform(int count, char** words)
{
    host::Service service(L"platform", "Serves players: accounts, logins, purchases, progress.", 1);
    addRolePage(service, "platform");
    platform::PlatformOptions options;
    service.option("--port", options.m_Port, "the port to listen on; 0 takes a free one");
    service.option("--registry", options.m_Registry, "HOST:PORT of the registry; empty for none");
    service.option("--name", options.m_Name, "the name in the list of servers");
    service.option("--host", options.m_Host, "the address to listen on");
    service.option("--db", options.m_Database, "sqlite://FILE or postgresql://...");
    service.option("--operator", options.m_Operator,
                   "the account that may use the maintenance command, the query tool and the monitoring");
    service.option("--certificate", options.m_Certificate, "serve by TLS: the file of the certificate");
    service.option("--key", options.m_Key, "the file of its key");
    platform::Platform platform(service);
    service.serve(platform.getServer());
    service.onStart([&] { return platform.start(options); });
    return service.run(count, words);
}

} // namespace arena
