// What scripts do with the reply to a question: one line of the transcript, and an answer of the expected class.
#pragma once

#include "examples/arena/player/player.h"
#include "host/questions.h"

#include <variant>

namespace arena::player
{

// The answer, if it is of this class; otherwise null, and the player has failed. If the connection has ended, which
// need not be the player's own, the script is played again.
template <class Answer, class Reply>
const Answer* expectAnswer(Player& player, const Reply& reply, const char* exchange)
{
    if (const auto* const answer = std::get_if<Answer>(&reply))
    {
        player.note("%s", exchange);
        return answer;
    }
    const auto* const none = std::get_if<host::Unanswered>(&reply);
    if (none && none->m_Reason == host::Unanswered::kEnded)
        player.interrupt();
    player.fail("%s: another answer or none", exchange);
    return nullptr;
}

// Whether a condition of the script holds; otherwise the player has failed.
inline bool expectThat(Player& player, bool isTrue, const char* words)
{
    if (!isTrue)
        player.fail("not so: %s", words);
    return isTrue;
}

} // namespace arena::player
