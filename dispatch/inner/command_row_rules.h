// The rules for the ids of the rows of commands.def. A row that breaks one does not compile, and the error names it.
#pragma once

#include "dispatch/command_id_limit.h"

#include <string_view>

struct CommandRow
{
    int m_Id;
    bool m_Shared;
    // The file that holds the row.
    std::string_view m_File;
};

// Whether the id is not below that of the row before, within a file.
template <int N>
constexpr bool RowAscends(const CommandRow (&rows)[N], int at)
{
    return at == 0 || rows[at - 1].m_File != rows[at].m_File || rows[at - 1].m_Id <= rows[at].m_Id;
}

// Whether as many rows hold the id as the row says: one COMMAND, or two that are both SHARED.
template <int N>
constexpr bool RowHoldsItsId(const CommandRow (&rows)[N], int at)
{
    int others = 0;
    bool agree = true;
    for (int i = 0; i < N; ++i)
    {
        if (i == at || rows[i].m_Id != rows[at].m_Id)
            continue;
        ++others;
        agree = agree && rows[i].m_Shared;
    }
    return rows[at].m_Shared ? others == 1 && agree : others == 0;
}

template <int N>
constexpr int HighestId(const CommandRow (&rows)[N])
{
    int highest = 0;
    for (const CommandRow& row : rows)
        highest = row.m_Id > highest ? row.m_Id : highest;
    return highest;
}

#define COMMAND_ROW_IN_ORDER(rows, at, Class)                                                                          \
    static_assert(rows[at].m_Id < kCommandIdLimit,                                                                     \
                  "the row of " #Class " has an id that is not below kCommandIdLimit");                                \
    static_assert(RowAscends(rows, at), "the row of " #Class " has a lower id than the row before it");                \
    static_assert(RowHoldsItsId(rows, at),                                                                             \
                  "the row of " #Class " has an id that another row holds too, or says SHARED without the other one");
