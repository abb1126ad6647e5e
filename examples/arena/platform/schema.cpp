#include "examples/arena/platform/schema.h"

namespace arena::platform
{

const std::vector<std::vector<std::string>>& getMigrations()
{
    static const std::vector<std::vector<std::string>> migrations = {
        // 0 -> 1: accounts. The bytes are authoritative; the texts are for tools that look at single values. The
        // version is the optimistic lock, the epoch the number of logins, owner and ticket are those of the last one.
        {
            R"(CREATE TABLE accounts (id NUMBERED, name VARCHAR(64) NOT NULL UNIQUE, password VARCHAR(128) NOT NULL,
                created VARCHAR(32) NOT NULL,
                version BIGINT NOT NULL, epoch BIGINT NOT NULL, owner VARCHAR(64) NOT NULL, ticket VARCHAR(32) NOT NULL,
                training TEXT NOT NULL, items TEXT NOT NULL, last_servers TEXT NOT NULL, attractions TEXT NOT NULL,
                account BYTES NOT NULL, match3 BYTES NOT NULL, match4 BYTES NOT NULL, global BYTES NOT NULL,
                home BYTES NOT NULL, travel BYTES NOT NULL, combat BYTES NOT NULL, match1 BYTES NOT NULL,
                achievement BYTES NOT NULL, campaign BYTES NOT NULL))",
            "CREATE INDEX accounts_by_ticket ON accounts (ticket)",
            "CREATE INDEX accounts_by_owner ON accounts (owner)",
            // Phones, devices and outside accounts that log in to an account.
            R"(CREATE TABLE identities (kind VARCHAR(16) NOT NULL, value VARCHAR(128) NOT NULL,
                account INTEGER NOT NULL REFERENCES accounts (id), PRIMARY KEY (kind, value)))",
            "CREATE INDEX identities_by_account ON identities (account)",
        },
        // 1 -> 2: purchases. The number of an order is the key of its payment and of its bill, so neither is made
        // twice.
        {
            R"(CREATE TABLE orders (number VARCHAR(64) PRIMARY KEY, account INTEGER NOT NULL REFERENCES accounts (id),
                reference VARCHAR(64) NOT NULL, trade VARCHAR(64) NOT NULL, price INTEGER NOT NULL,
                state INTEGER NOT NULL, created BIGINT NOT NULL, UNIQUE (account, reference)))",
            // The ledger of the payment service, which is outside of the platform.
            "CREATE TABLE payments (order_number VARCHAR(64) PRIMARY KEY, price INTEGER NOT NULL)",
            R"(CREATE TABLE bills (order_number VARCHAR(64) PRIMARY KEY REFERENCES orders (number),
                account INTEGER NOT NULL REFERENCES accounts (id), diamonds INTEGER NOT NULL,
                version BIGINT NOT NULL))",
            "CREATE TABLE used_codes (code VARCHAR(64) PRIMARY KEY, account INTEGER NOT NULL REFERENCES accounts (id))",
        },
        // 2 -> 3: boards, mail and logs.
        {
            R"(CREATE TABLE scores (board VARCHAR(16) NOT NULL, game INTEGER NOT NULL,
                account INTEGER NOT NULL REFERENCES accounts (id), score INTEGER NOT NULL, reached VARCHAR(32) NOT NULL,
                PRIMARY KEY (board, game, account)))",
            "CREATE INDEX scores_by_rank ON scores (board, game, score)",
            R"(CREATE TABLE letters (id NUMBERED, receiver INTEGER NOT NULL REFERENCES accounts (id),
                sender VARCHAR(64) NOT NULL, kind INTEGER NOT NULL, subject TEXT NOT NULL, body TEXT NOT NULL,
                sent VARCHAR(32) NOT NULL, seen INTEGER NOT NULL))",
            "CREATE INDEX letters_by_receiver ON letters (receiver)",
            R"(CREATE TABLE logs (id NUMBERED, written VARCHAR(32) NOT NULL, kind VARCHAR(32) NOT NULL,
                account VARCHAR(64) NOT NULL, line TEXT NOT NULL))",
        },
        // 3 -> 4: friends, what players show them, and the messages that wait for their receivers.
        {
            R"(CREATE TABLE friends (account INTEGER NOT NULL REFERENCES accounts (id),
                friend INTEGER NOT NULL REFERENCES accounts (id), PRIMARY KEY (account, friend)))",
            R"(CREATE TABLE friend_texts (account INTEGER NOT NULL REFERENCES accounts (id), kind INTEGER NOT NULL,
                words TEXT NOT NULL, PRIMARY KEY (account, kind)))",
            R"(CREATE TABLE friend_messages (id NUMBERED, receiver INTEGER NOT NULL REFERENCES accounts (id),
                words TEXT NOT NULL))",
            "CREATE INDEX friend_messages_by_receiver ON friend_messages (receiver)",
        },
    };
    return migrations;
}

} // namespace arena::platform
