// Encoding and decoding compared with a hand-written codec for the same bytes: a small command, and an account with 30
// games and 20 items, 64 different ones in turn.
#include "bench/support/floor_codec.h"
#include "bench/support/records.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"
#include "dispatch/analyser.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>

namespace
{

using bench::kRecords;

// The same record as a plain structure, for the hand-written codec.
struct FloorGame
{
    int m_Type = 0, m_Id = 0, m_Level = 0;
    std::array<std::wstring, 6> m_Texts;
    float m_Best = 0, m_Second = 0;
};
struct FloorTraining : FloorGame
{
    int m_Group = 0, m_DateSlot = 0, m_Param0 = 0, m_Param1 = 0, m_Param2 = 0;
    bool m_Flag = false;
    int m_Link = 0, m_Param3 = 0;
    bool m_Locked = false;
    std::wstring m_Last;
    int m_Plays = 0, m_Duration = 0;
    float m_Time = 0;
};
struct FloorKinect : FloorGame
{
    std::wstring m_Last;
    int m_Plays = 0, m_Duration = 0;
    float m_Time = 0;
};
struct FloorItem
{
    int m_Type = 0, m_Num = 0;
    std::array<std::wstring, 12> m_Texts;
};
struct FloorAccount
{
    int m_Id = 0;
    std::wstring m_Name, m_Note;
    std::array<int, 3> m_A{};
    std::array<int, 7> m_Allowance{};
    std::array<int, 6> m_B{};
    bool m_Flag = false;
    FloorKinect m_Kinect;
    std::map<int, FloorTraining> m_Trainings;
    std::map<int, std::wstring> m_Dates;
    std::map<int, FloorKinect> m_Kinects;
    std::vector<FloorItem> m_Items, m_Gifts;
};

void write(bench::FloorWriter& out, const FloorGame& game)
{
    out.u32(static_cast<uint32_t>(game.m_Type));
    out.u32(static_cast<uint32_t>(game.m_Id));
    out.u32(static_cast<uint32_t>(game.m_Level));
    for (const std::wstring& text : game.m_Texts)
        out.text(text);
    out.number(game.m_Best);
    out.number(game.m_Second);
}
void write(bench::FloorWriter& out, const FloorTraining& game)
{
    write(out, static_cast<const FloorGame&>(game));
    for (const int value : {game.m_Group, game.m_DateSlot, game.m_Param0, game.m_Param1, game.m_Param2})
        out.u32(static_cast<uint32_t>(value));
    out.u8(game.m_Flag);
    out.u32(static_cast<uint32_t>(game.m_Link));
    out.u32(static_cast<uint32_t>(game.m_Param3));
    out.u8(game.m_Locked);
    out.text(game.m_Last);
    out.u32(static_cast<uint32_t>(game.m_Plays));
    out.u32(static_cast<uint32_t>(game.m_Duration));
    out.number(game.m_Time);
}
void write(bench::FloorWriter& out, const FloorKinect& game)
{
    write(out, static_cast<const FloorGame&>(game));
    out.text(game.m_Last);
    out.u32(static_cast<uint32_t>(game.m_Plays));
    out.u32(static_cast<uint32_t>(game.m_Duration));
    out.number(game.m_Time);
}
void write(bench::FloorWriter& out, const FloorItem& item)
{
    out.u32(static_cast<uint32_t>(item.m_Type));
    out.u32(static_cast<uint32_t>(item.m_Num));
    for (const std::wstring& text : item.m_Texts)
        out.text(text);
}
void write(bench::FloorWriter& out, const FloorAccount& account)
{
    out.u32(static_cast<uint32_t>(account.m_Id));
    out.text(account.m_Name);
    out.text(account.m_Note);
    for (const int value : account.m_A)
        out.u32(static_cast<uint32_t>(value));
    for (const int value : account.m_Allowance)
        out.u32(static_cast<uint32_t>(value));
    for (const int value : account.m_B)
        out.u32(static_cast<uint32_t>(value));
    out.u8(account.m_Flag);
    write(out, account.m_Kinect);
    out.u32(static_cast<uint32_t>(account.m_Trainings.size()));
    for (const auto& [id, game] : account.m_Trainings)
        write(out, game);
    out.u32(static_cast<uint32_t>(account.m_Dates.size()));
    for (const auto& [slot, date] : account.m_Dates)
        out.text(date);
    out.u32(static_cast<uint32_t>(account.m_Kinects.size()));
    for (const auto& [id, game] : account.m_Kinects)
        write(out, game);
    for (const auto* items : {&account.m_Items, &account.m_Gifts})
    {
        out.u32(static_cast<uint32_t>(items->size()));
        for (const FloorItem& item : *items)
            write(out, item);
    }
}

void read(bench::FloorReader& in, FloorGame& game)
{
    game.m_Type = in.i32();
    game.m_Id = in.i32();
    game.m_Level = in.i32();
    for (std::wstring& text : game.m_Texts)
        in.text(text);
    game.m_Best = in.number();
    game.m_Second = in.number();
}
void read(bench::FloorReader& in, FloorTraining& game)
{
    read(in, static_cast<FloorGame&>(game));
    for (int* value : {&game.m_Group, &game.m_DateSlot, &game.m_Param0, &game.m_Param1, &game.m_Param2})
        *value = in.i32();
    game.m_Flag = in.u8();
    game.m_Link = in.i32();
    game.m_Param3 = in.i32();
    game.m_Locked = in.u8();
    in.text(game.m_Last);
    game.m_Plays = in.i32();
    game.m_Duration = in.i32();
    game.m_Time = in.number();
}
void read(bench::FloorReader& in, FloorKinect& game)
{
    read(in, static_cast<FloorGame&>(game));
    in.text(game.m_Last);
    game.m_Plays = in.i32();
    game.m_Duration = in.i32();
    game.m_Time = in.number();
}
void read(bench::FloorReader& in, FloorItem& item)
{
    item.m_Type = in.i32();
    item.m_Num = in.i32();
    for (std::wstring& text : item.m_Texts)
        in.text(text);
}
void read(bench::FloorReader& in, FloorAccount& account)
{
    account.m_Id = in.i32();
    in.text(account.m_Name);
    in.text(account.m_Note);
    for (int& value : account.m_A)
        value = in.i32();
    for (int& value : account.m_Allowance)
        value = in.i32();
    for (int& value : account.m_B)
        value = in.i32();
    account.m_Flag = in.u8();
    read(in, account.m_Kinect);
    for (int i = in.i32(); i > 0 && in.good(); --i)
    {
        FloorTraining game;
        read(in, game);
        account.m_Trainings.insert_or_assign(account.m_Trainings.end(), game.m_Id, std::move(game));
    }
    for (int i = 0, count = in.i32(); i < count && in.good(); ++i)
        in.text(account.m_Dates[i]);
    for (int i = in.i32(); i > 0 && in.good(); --i)
    {
        FloorKinect game;
        read(in, game);
        account.m_Kinects.insert_or_assign(account.m_Kinects.end(), game.m_Id, std::move(game));
    }
    for (auto* items : {&account.m_Items, &account.m_Gifts})
    {
        const int count = in.i32();
        items->reserve(static_cast<size_t>(count));
        for (int i = 0; i < count && in.good(); ++i)
            read(in, items->emplace_back());
    }
}

[[noreturn]] void disagree(const char* what)
{
    std::fprintf(stderr, "the hand-written codec and the library disagree on %s\n", what);
    std::exit(1);
}

void benchAccount()
{
    std::vector<std::unique_ptr<AccountData>> accounts;
    std::vector<std::vector<unsigned char>> bytes;
    std::vector<FloorAccount> floors(kRecords);
    for (unsigned i = 0; i < kRecords; ++i)
    {
        accounts.push_back(bench::accountOf(i + 1));
        CCmdPackager pk;
        if (!accounts.back()->Write(&pk))
            disagree("whether an account can be written");
        bytes.emplace_back(pk.GetBuffer(), pk.GetBuffer() + pk.GetDataSize());
        bench::FloorReader in(bytes.back().data(), bytes.back().size());
        read(in, floors[i]);
        for (const auto floats : {bench::Floats::kByLibrary, bench::Floats::kByIntegers})
        {
            std::vector<unsigned char> again(65536);
            bench::FloorWriter out(again, floats);
            write(out, floors[i]);
            again.resize(out.size());
            if (!in.good() || again != bytes.back())
                disagree("the bytes of an account");
        }
    }
    bench::note("account of " + std::to_string(bench::kGames) + " games and " + std::to_string(bench::kItems) +
                " items, about " + std::to_string(bytes[0].size()) + " bytes");

    const auto pk = std::make_unique<CCmdPackager>();
    std::vector<unsigned char> room(65536);
    const auto encode = [&]
    {
        for (const auto& account : accounts)
        {
            pk->Clear();
            account->Write(pk.get());
            bench::keep(*pk);
        }
    };
    const auto encodeFloor = [&](bench::Floats floats)
    {
        for (const FloorAccount& account : floors)
        {
            bench::FloorWriter out(room, floats);
            write(out, account);
            bench::keep(out);
        }
    };
    bench::compare("account encode", kRecords, encode, [&] { encodeFloor(bench::Floats::kByLibrary); });
    bench::compare("account encode, floats by integers", kRecords, encode,
                   [&] { encodeFloor(bench::Floats::kByIntegers); });

    std::vector<std::unique_ptr<CCmdPackager>> filled;
    for (const auto& each : bytes)
    {
        filled.push_back(std::make_unique<CCmdPackager>());
        filled.back()->Write(each.data(), static_cast<int>(each.size()));
    }
    bench::compare(
        "account decode", kRecords,
        [&]
        {
            for (const auto& packager : filled)
            {
                packager->Reset();
                AccountData account;
                account.Read(packager.get());
                bench::keep(account);
            }
        },
        [&]
        {
            for (const auto& each : bytes)
            {
                FloorAccount account;
                bench::FloorReader in(each.data(), each.size());
                read(in, account);
                bench::keep(account);
            }
        });
}

unsigned long g_Seen = 0;

void onEcho(CCmdHead* command, unsigned long, unsigned long)
{
    g_Seen += static_cast<CCmdServerEcho*>(command)->m_Data;
}

void benchSmall()
{
    constexpr int kCalls = 1000;
    CCmdServerEcho echo;
    echo.m_Data = 7;
    const auto pk = std::make_unique<CCmdPackager>();
    std::vector<unsigned char> room(4096);
    bench::compare(
        "small command encode", kCalls,
        [&]
        {
            for (int i = 0; i < kCalls; ++i)
            {
                pk->Clear();
                echo.Write(pk.get());
                bench::keep(*pk);
            }
        },
        [&]
        {
            for (int i = 0; i < kCalls; ++i)
            {
                bench::FloorWriter out(room);
                out.u16(echo.m_HeadVersion);
                out.u16(echo.m_ClientIndex);
                out.bytes(&echo.m_ClientAddress, 16);
                out.u8(0);
                out.u32(static_cast<uint32_t>(echo.m_Data));
                bench::keep(out);
            }
        });

    const auto analyser = std::make_unique<CCmdAnalyser>();
    analyser->Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process, onEcho);
    pk->Clear();
    echo.Write(pk.get());
    const size_t size = static_cast<size_t>(pk->GetDataSize());
    bench::compare(
        "small command decode and dispatch", kCalls,
        [&]
        {
            for (int i = 0; i < kCalls; ++i)
            {
                pk->Reset();
                analyser->Analyse(*pk, 0, 0);
            }
        },
        [&]
        {
            for (int i = 0; i < kCalls; ++i)
            {
                bench::FloorReader in(pk->GetBuffer(), size);
                std::wstring name;
                unsigned char address[16];
                const bool version = in.u16() == 2;
                const unsigned index = in.u16();
                in.bytes(address, sizeof address);
                in.text(name);
                const unsigned long data = in.u32();
                if (version && in.good())
                    g_Seen += data;
                bench::keep(index);
                bench::keep(address);
                bench::keep(name);
            }
        });
    bench::keep(g_Seen);
}

} // namespace

int main(int argc, char** argv)
{
    bench::start(argc, argv);
    benchSmall();
    benchAccount();
    return 0;
}
