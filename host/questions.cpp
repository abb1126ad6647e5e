#include "host/questions.h"

#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/platform/class_name.h"
#include "host/inner/question_table.h"

namespace host
{

using zet::platform::getClassName;

const wchar_t* Unanswered::getText() const
{
    switch (m_Reason)
    {
    case kTimedOut:
        return L"timed out";
    case kEnded:
        return L"the connection ended";
    case kNotSent:
        break;
    }
    return L"not sent";
}

QuestionObserver::~QuestionObserver() = default;

namespace inner
{

Waiter::Waiter() = default;

Waiter::~Waiter()
{
    if (m_Table)
        m_Table->withdraw(*this);
}

void Waiter::ask(const std::shared_ptr<QuestionTable>& table, CCommandSocket& socket, const CCmdHead& command,
                 std::initializer_list<const std::type_info*> answers, std::chrono::milliseconds timeOut)
{
    m_Table = table;
    table->ask(*this, socket, command, answers, timeOut);
}

void Waiter::wait(const std::shared_ptr<QuestionTable>& table, std::chrono::milliseconds time)
{
    m_Table = table;
    table->wait(*this, time);
}

bool takeAnswer(QuestionTable& table, CCommandSocket& socket, CCmdHead& answer, const std::type_info& type)
{
    return table.takeAnswer(socket, answer, type);
}

void reportUnasked(const CCmdHead& answer, const std::type_info& type, CCommandSocket& socket)
{
    if (zet::PeerLog::takesLine())
        zet::Log::warning(L"%s (0x%04x) dropped: no question waits for it (%s)", getClassName(type), answer.GetID(),
                          socket.getPeerName());
}

} // namespace inner

Questions::Questions(Handlers& handlers, zet::System& system)
    : m_Handlers(handlers), m_Table(std::make_shared<inner::QuestionTable>())
{
    if (!m_Table->start(&system))
        zet::Log::error(L"Questions: not made on the thread of its System; no time limit will be noticed");
}

Questions::~Questions()
{
    m_Table->closeTable();
}

void Questions::setObserver(QuestionObserver& observer)
{
    m_Table->m_Observer = &observer;
}

int Questions::getOpenCount() const
{
    return m_Table->getOpenCount();
}

void Questions::addExpected(const std::type_info& type)
{
    m_Table->addExpected(type);
}

} // namespace host
