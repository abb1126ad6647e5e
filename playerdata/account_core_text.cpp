// The training string and the item string; see account_core.h for their grammar.
#include "playerdata/account_core.h"

#include "framework/time.h"
#include "playerdata/text_scan.h"

#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

namespace
{

// Slots of play dates in a training string.
constexpr int kDateSlots = 20;
// The maximum length of a date and of a name in a load, in units.
constexpr int kLongestDate = 99;
constexpr int kLongestName = 49;

// Truncates toward zero. A score outside the range of int gives the nearest limit; NaN gives 0.
int truncateScore(float score)
{
    constexpr float kBeyond = 2147483648.0f;
    if (score >= kBeyond)
        return std::numeric_limits<int>::max();
    if (score <= -kBeyond)
        return std::numeric_limits<int>::min();
    return score == score ? static_cast<int>(score) : 0;
}

// Stores the fields of a record in the map's game of that id.
void loadGame(std::wstring_view record, std::map<int, FGameTraining>& games)
{
    int fields[] = {0, -1, 0, 0, 1};
    TextScanner scanner(record);
    for (int i = 0; i < 5; ++i)
        if ((i > 0 && !scanner.takeUnit(L'|')) || !scanner.takeInt(fields[i]))
            break;

    FGameObject named;
    named.m_GameId = fields[0];
    if (!named.IsValid())
        return;
    FGameTraining& game = games[fields[0]];
    game.m_BestScore = static_cast<float>(fields[1]);
    game.m_PlayTimes = fields[2];
    game.m_CDDuration = fields[3];
    game.m_Locked = fields[4] > 0;
}

void loadDate(std::wstring_view record, std::map<int, zet::String_T<wchar_t>>& dates)
{
    zet::String_T<wchar_t> date;
    int slot = -1;
    TextScanner scanner(record);
    if (scanner.takeText(L'|', kLongestDate, date) && scanner.takeUnit(L'|') && scanner.takeInt(slot) && slot != -1)
        dates[slot] = std::move(date);
}

zet::Time getDiscardStart()
{
    zet::Time start;
    start.convertFromString(FGameItem::_DiscardStartTime);
    return start;
}

} // namespace

zet::String_T<wchar_t> AccountData::SaveStringFromTraining()
{
    zet::String_T<wchar_t> text;
    if (m_TrainingMap.empty())
        return text;

    const wchar_t* dates[kDateSlots];
    for (const wchar_t*& date : dates)
        date = L"";
    for (auto& [id, game] : m_TrainingMap)
    {
        if (!game.IsValid())
            continue;
        // A slot beyond the list is not in the text.
        if (game.m_DateSlot >= 0 && game.m_DateSlot < kDateSlots)
            dates[game.m_DateSlot] = game.m_LastPlayTime;
        text += zet::formatText(L"%d|%d|%d|%d|%d_", game.m_GameId, truncateScore(game.m_BestScore), game.m_PlayTimes,
                                game.m_CDDuration, game.m_Locked ? 1 : 0);
    }
    for (int slot = 0; slot < kDateSlots; ++slot)
        text += zet::formatText(L"%s|%d_", dates[slot], slot);
    return text;
}

void AccountData::LoadTrainingFromString(const zet::String_T<wchar_t>& text)
{
    std::wstring_view left = text.view();
    std::wstring_view record;
    while (TextScanner::takeRecord(left, L'_', record))
    {
        if (record.empty())
            continue;
        // Every real date has a ':', and no game has one.
        if (record.find(L':') == std::wstring_view::npos)
            loadGame(record, m_TrainingMap);
        else
            loadDate(record, m_DateMap);
    }
}

zet::String_T<wchar_t> AccountData::SaveStringFromItem() const
{
    const zet::Time start = getDiscardStart();
    zet::String_T<wchar_t> text;
    for (const FGameItem& item : m_ItemList)
    {
        if (!item.IsValid())
            continue;
        long long seconds = 0;
        if (!item.m_Deadline.isEmpty())
        {
            zet::Time deadline;
            deadline.convertFromString(item.m_Deadline);
            seconds = deadline - start;
        }
        text += zet::formatText(L"%s|%d|%ld=", item.m_Name, item.m_Num, static_cast<int32_t>(seconds));
    }
    return text;
}

void AccountData::LoadItemFromString(const zet::String_T<wchar_t>& text)
{
    const zet::Time start = getDiscardStart();
    std::wstring_view left = text.view();
    std::wstring_view record;
    while (TextScanner::takeRecord(left, L'=', record))
    {
        zet::String_T<wchar_t> name;
        int num = 0;
        int seconds = 0;
        TextScanner scanner(record);
        if (!scanner.takeText(L'|', kLongestName, name) || !scanner.takeUnit(L'|') || !scanner.takeInt(num) ||
            !scanner.takeUnit(L'|') || !scanner.takeInt(seconds))
            continue;

        FGameItem item;
        item.m_Name = std::move(name);
        item.m_Num = num;
        // Written as signed but read as unsigned: the dates reach into 2136.
        if (seconds != 0)
            item.m_Deadline = (start + static_cast<uint32_t>(seconds)).convertToString(false);
        if (item.IsValid())
            m_ItemList.push_back(std::move(item));
    }
}
