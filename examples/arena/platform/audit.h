// Whether the account database is consistent.
#pragma once

#include <string>
#include <vector>

namespace arena::platform
{

class Database;

struct Audit
{
    // In words, one for each fault.
    std::vector<std::string> m_Findings;
    int m_Accounts = 0;
    int m_Orders = 0;
    int m_Bills = 0;
};

// Looks at a snapshot in one transaction. now: seconds since 1970.
Audit audit(Database& database, long long now);

} // namespace arena::platform
