#include "examples/arena/command_line.h"
#include "examples/arena/platform/audit.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/roles.h"
#include "framework/time.h"
#include "host/service.h"

#include <cstdio>

namespace arena
{

int runAudit(int count, char** words)
{
    CLI::App app("Says what is wrong in the database of a platform; returns 1 if anything is.");
    std::string url;
    app.add_option("--db", url, "sqlite://FILE or postgresql://...")->required();
    if (const auto result = parseWords(app, count, words))
        return *result;
    try
    {
        platform::Database database(url, false);
        const platform::Audit audit = platform::audit(database, zet::time(nullptr));
        for (const std::string& finding : audit.m_Findings)
            std::printf("finding: %s\n", finding.c_str());
        std::printf("audit: %d accounts, %d orders, %d bills, %d findings\n", audit.m_Accounts, audit.m_Orders,
                    audit.m_Bills, static_cast<int>(audit.m_Findings.size()));
        return audit.m_Findings.empty() ? 0 : 1;
    }
    catch (const std::exception& error)
    {
        std::printf("finding: %s\n", error.what());
        return 1;
    }
}

} // namespace arena
