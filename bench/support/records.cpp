#include "bench/support/records.h"

namespace bench
{

namespace
{

zet::String_T<wchar_t> textOf(std::mt19937& random, int most)
{
    zet::String_T<wchar_t> text;
    const int length = static_cast<int>(random() % static_cast<unsigned>(most + 1));
    wchar_t* out = text.resizeForOverwrite(length);
    for (int i = 0; i < length; ++i)
        out[i] = static_cast<wchar_t>(i % 4 == 3 ? 0x4E00 + random() % 500 : L'a' + random() % 26);
    return text;
}

float scoreOf(std::mt19937& random)
{
    return static_cast<float>(random() % 10000000) / 1000.0f;
}

void fillBase(FGameObject& game, std::mt19937& random)
{
    game.m_Level = static_cast<int>(random() % 50);
    for (zet::String_T<wchar_t>* text :
         {&game.m_Text0, &game.m_Text1, &game.m_Text2, &game.m_Text3, &game.m_Text4, &game.m_Text5})
        *text = textOf(random, 14);
    game.m_BestScore = scoreOf(random);
    game.m_SecondScore = scoreOf(random);
}

void fillHead(CCmdPlatform& command, std::mt19937& random)
{
    command.m_ClientIndex = static_cast<unsigned short>(random());
    reinterpret_cast<unsigned char*>(&command.m_ClientAddress)[3] = static_cast<unsigned char>(random());
    command.m_AccountName = L"runner";
}

float positionOf(std::mt19937& random)
{
    return static_cast<float>(random() % 1000000) / 1000.0f;
}

} // namespace

std::unique_ptr<AccountData> accountOf(unsigned seed)
{
    std::mt19937 random(seed);
    auto account = std::make_unique<AccountData>();
    account->m_AccountId = static_cast<int>(random());
    account->m_AccountName = textOf(random, 16);
    account->m_AccountNote = textOf(random, 30);
    fillBase(account->m_KinectGame, random);
    for (int i = 1; i <= kGames; ++i)
    {
        FGameTraining game;
        fillBase(game, random);
        game.m_GameId = i;
        game.m_PlayTimes = static_cast<int>(random() % 8);
        game.m_CDTime = scoreOf(random);
        account->m_TrainingMap[i] = game;
    }
    for (int i = 0; i < kItems; ++i)
    {
        FGameItem item;
        item.m_Num = static_cast<int>(random() % 100);
        for (zet::String_T<wchar_t>* text : {&item.m_Text0, &item.m_Name, &item.m_Text1, &item.m_Text2, &item.m_Text3})
            *text = textOf(random, 14);
        if (i % 3 == 0)
            item.m_Deadline = L"2027-3-14 12:00:00";
        account->m_ItemList.push_back(item);
    }
    return account;
}

void fill(CCmdGS_PawnRunning& command, std::mt19937& random)
{
    fillHead(command, random);
    for (int i = 0; i < 4; ++i)
        command.m_Values.push_back(static_cast<short>(random()));
    command.m_Float1 = positionOf(random);
}

void fill(CCmdGS_PawnInput& command, std::mt19937& random)
{
    fillHead(command, random);
    command.m_Byte1 = static_cast<unsigned char>(random());
}

void fill(CCmdKeyEvent& command, std::mt19937& random)
{
    fillHead(command, random);
    command.m_Byte1 = static_cast<unsigned char>(random());
    command.m_Byte3 = static_cast<unsigned char>(random());
}

void fill(CCmdTouchEvent& command, std::mt19937& random)
{
    fillHead(command, random);
    command.m_Byte2 = static_cast<unsigned char>(random());
    command.m_Word1 = static_cast<unsigned short>(random());
    command.m_Word2 = static_cast<unsigned short>(random());
}

void fill(CCmdSkeletons& command, std::mt19937& random)
{
    command.m_ClientIndex = static_cast<unsigned short>(random());
    command.m_SkeletonCount = CCmdSkeletons::kSkeletons;
    command.m_Time = random() & 0xFFFFFFFF;
    command.m_Values[4] = static_cast<int>(random() % 1000);
    command.m_Shorts[11] = static_cast<short>(random());
    for (Skeletons& skeleton : command.m_Skeletons)
        for (Skeletons::Joint& joint : skeleton.m_Joints)
        {
            joint.m_X = positionOf(random);
            joint.m_Y = positionOf(random);
            joint.m_State = random() & 1;
        }
    command.m_Value1 = 3;
}

void fill(CCmdHomePackRequest& command, std::mt19937& random)
{
    fillHead(command, random);
    command.m_PackType = 5;
    HomePack_StartGame_Request start;
    for (int* value : {&start.m_Value1, &start.m_Value2, &start.m_Value3, &start.m_Value4, &start.m_Value5})
        *value = static_cast<int>(random() % 1000);
    start.m_Text1 = L"2027-3-14 12:00:00";
    start.m_Text2 = L"a rush for two";
    start.Write(&command.m_PackData);
}

} // namespace bench
