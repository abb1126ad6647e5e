// Kills a process that changes accounts, between any two steps of a change, again and again. After each kill the
// database must hold every change that was acknowledged, no bill twice, and at most the one change that was under way.
//
//   account_crash FOLDER [SEED [ROUNDS]]
#include "examples/arena/platform/audit.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/orders.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using namespace arena::platform;

constexpr int kPlayers = 3;
constexpr int kChanges = 30;
constexpr int kMostSteps = 120;

zet::String_T<wchar_t> nameOf(int player)
{
    return zet::String_T<wchar_t>(L"player-") + zet::String_T<wchar_t>(player);
}

// The acknowledgement of a change, as the parent reads it from a pipe.
struct Acknowledged
{
    char m_Kind; // 'g': gold, 'b': bill
    int m_Player;
    char m_Order[32];
};

void acknowledge(int pipe, char kind, int player, const std::string& order)
{
    Acknowledged change = {kind, player, {}};
    std::snprintf(change.m_Order, sizeof change.m_Order, "%s", order.c_str());
    if (write(pipe, &change, sizeof change) != sizeof change)
        std::abort();
}

// Changes accounts until it has done them all or is killed.
void change(const std::string& url, unsigned int seed, int pipe)
{
    std::mt19937 random(seed);
    int left = 1 + static_cast<int>(random() % kMostSteps);
    Database database(url);
    Accounts accounts(database);
    Orders orders(accounts);
    database.m_OnStep = [&](const char*)
    {
        if (--left == 0)
            std::raise(SIGKILL);
    };
    for (const std::string& number : orders.findPaid())
        orders.apply(number);
    for (int i = 0; i < kChanges; ++i)
    {
        const int player = static_cast<int>(random() % kPlayers);
        StoredAccount account;
        if (!accounts.find(nameOf(player), account))
            std::abort();
        if (random() % 2 == 0)
        {
            ++goldOf(*account.m_Records);
            if (accounts.save(account) == Saved::kDone)
                acknowledge(pipe, 'g', player, "");
            continue;
        }
        const FInPurchaseGameTrade& trade = getShop().m_InPurchaseTrades[random() % 3];
        const zet::String_T<wchar_t> reference(static_cast<int>(random() % 100000));
        Order order;
        if (!orders.open(account.m_Id, reference, trade.m_TradeName, trade.m_Cost0, order) ||
            order.m_State != OrderState::kOpen || !orders.pay(order.m_Number, order.m_Price))
            continue;
        // Whoever repeats it has no effect.
        for (unsigned int times = 1 + random() % 2; times > 0; --times)
            if (orders.apply(order.m_Number) != Applied::kDone)
                std::abort();
        acknowledge(pipe, 'b', player, order.m_Number);
    }
}

int fail(const char* words, int round)
{
    std::printf("round %d: %s\n", round, words);
    return 1;
}

// What the parent knows of the players.
struct Known
{
    int m_Gold[kPlayers] = {};
    // Kills after which one more change may be there than was acknowledged.
    int m_Kills = 0;
    int m_Bills = 0;
};

int check(const std::string& url, int round, const std::vector<Acknowledged>& changes, Known& known, bool isLast)
{
    Database database(url);
    Accounts accounts(database);
    Orders orders(accounts);
    for (const Acknowledged& each : changes)
    {
        if (each.m_Kind == 'g')
        {
            ++known.m_Gold[each.m_Player];
            continue;
        }
        Order order;
        if (!orders.find(each.m_Order, order) || order.m_State != OrderState::kApplied)
            return fail("an acknowledged bill is lost", round);
        ++known.m_Bills;
    }
    int more = 0;
    for (int player = 0; player < kPlayers; ++player)
    {
        StoredAccount account;
        if (!accounts.find(nameOf(player), account))
            return fail("an account is lost", round);
        const int gold = goldOf(*account.m_Records) - goldOf(*makeRecords());
        if (gold < known.m_Gold[player])
            return fail("acknowledged gold is lost", round);
        more += gold - known.m_Gold[player];
        // From now on what is there is known.
        known.m_Gold[player] = gold;
    }
    if (more > 1)
        return fail("there is more gold than one change under way", round);
    if (isLast)
        for (const std::string& number : orders.findPaid())
            orders.apply(number);
    for (const std::string& finding : audit(database, 0).m_Findings)
        if (isLast || finding.find("is paid and not applied") == std::string::npos)
        {
            std::printf("audit: %s\n", finding.c_str());
            return fail("the audit is not clean", round);
        }
    return 0;
}

} // namespace

int main(int count, char** words)
{
    if (count < 2)
        return 2;
    const std::string url = std::string("sqlite://") + words[1] + "/crash.db";
    const unsigned int seed = count > 2 ? static_cast<unsigned int>(std::atoi(words[2])) : 1;
    const int rounds = count > 3 ? std::atoi(words[3]) : 40;
    {
        Database database(url);
        Accounts accounts(database);
        for (int player = 0; player < kPlayers; ++player)
            if (!accounts.create(nameOf(player), "", nullptr, L"", *makeRecords()))
                return fail("no account", 0);
    }
    std::mt19937 random(seed);
    Known known;
    for (int round = 1; round <= rounds; ++round)
    {
        int ends[2];
        if (pipe(ends) != 0)
            return fail("no pipe", round);
        const unsigned int own = static_cast<unsigned int>(random());
        const pid_t child = fork();
        if (child == 0)
        {
            close(ends[0]);
            change(url, own, ends[1]);
            _exit(0);
        }
        close(ends[1]);
        std::vector<Acknowledged> changes;
        Acknowledged next;
        while (read(ends[0], &next, sizeof next) == sizeof next)
            changes.push_back(next);
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        const bool isKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        known.m_Kills += isKilled ? 1 : 0;
        if (!isKilled && !(WIFEXITED(status) && WEXITSTATUS(status) == 0))
            return fail("the process ended by itself", round);
        if (check(url, round, changes, known, round == rounds) != 0)
            return 1;
    }
    std::printf("%d of %d processes killed, %d bills acknowledged\n", known.m_Kills, rounds, known.m_Bills);
    // A run that kills hardly anything shows nothing.
    return 2 * known.m_Kills > rounds && known.m_Bills > 0 ? 0 : fail("too few kills or bills", rounds);
}
