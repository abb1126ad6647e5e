// Questions in packs: a message of a feature is sent, and a message of its envelopes is the answer.
//
//   setNumbers(home);
//   host::expectPack<HomePack_LoadData_Reply>(home, questions);
//   home.install(handlers);
//   ...
//   const auto reply = co_await host::askPack<HomePack_LoadData_Reply>(home, socket, request, 5s);
//   if (const auto* loaded = std::get_if<host::PackAnswer<HomePack_LoadData_Reply>>(&reply))
//       show(loaded->m_Message.m_HomeData);
//
// A question takes a message of the named class only; other messages in the same envelope go to their handlers. Within
// a class, answers are matched as host/questions.h says: if the peer also sends a message without a request, the oldest
// question that names its class takes it.
#pragma once

#include "host/pack_router.h"
#include "host/tasks.h"

namespace host
{

// A message that answers a question: with the head of its envelope, and what else the envelope says.
template <class Message>
class PackAnswer final : public CCmdPlatform
{
public:
    // Takes the message, and the head and the fields of its envelope.
    template <class Envelope>
    PackAnswer(Message&& message, const Envelope& envelope) : CCmdPlatform(envelope), m_Message(std::move(message))
    {
        if constexpr (requires { envelope.m_PackIndex; })
            m_PackIndex = envelope.m_PackIndex;
        if constexpr (requires { envelope.m_Error; })
        {
            m_Error = envelope.m_Error;
            m_Msg = envelope.m_Msg;
        }
    }

    Message m_Message;
    // 0 in envelopes without it.
    int m_PackIndex = 0;
    // Of a social reply; in other features 0 and empty.
    unsigned short m_Error = 0;
    zet::String_T<wchar_t> m_Msg;
};

namespace inner
{

// Writes the envelope when the question is sent, so that the waiting task does not hold its 64 KiB.
template <class Router, class Envelope, class Message, class Filling>
class PackedCommand : public CCmdHead
{
public:
    PackedCommand(const Router& router, const Message& message, Filling fill)
        : CCmdHead(Envelope().GetID()), m_Router(router), m_Message(message), m_Fill(std::move(fill))
    {
    }

    bool Write(CCmdPackager* pk) const override
    {
        Envelope envelope;
        if (!m_Router.pack(envelope, m_Message))
            return false;
        m_Fill(envelope);
        return envelope.Write(pk);
    }

private:
    const Router& m_Router;
    const Message& m_Message;
    Filling m_Fill;
};

template <class Message>
struct ReportUnaskedPack
{
    void operator()(CCommandSocket& socket, const PackAnswer<Message>& answer) const
    {
        reportUnasked(answer, typeid(Message), socket);
    }
};

} // namespace inner

// At start, between number() and install(): questions may name PackAnswer<Message>. otherwise takes
// (CCommandSocket&, PackAnswer<Message>&) and is called for a message that no question waits for; without it, such a
// message is logged. prepare is that of PackRouter::on(). False in the cases of PackRouter::on().
template <class Message, class... Envelopes, class Otherwise = inner::ReportUnaskedPack<Message>,
          class Preparation = inner::NoPreparation>
bool expectPack(PackRouter<Envelopes...>& packs, Questions& questions, Otherwise otherwise = {},
                Preparation prepare = {})
{
    static_assert(std::is_invocable_v<Otherwise&, CCommandSocket&, PackAnswer<Message>&>,
                  "the handler of expectPack<Message>() takes (CCommandSocket&, PackAnswer<Message>&)");
    return packs.template on<Message>(
        [take = questions.addSource<PackAnswer<Message>>(),
         otherwise = std::move(otherwise)](CCommandSocket& socket, Message& message, auto& envelope) mutable
        {
            PackAnswer<Message> answer(std::move(message), envelope);
            if (!take(socket, answer))
                otherwise(socket, answer);
        },
        std::move(prepare));
}

// A message as a command for Tasks::ask(), in the envelope that carries it; see PackRouter::send() for Envelope and
// fill. It refers to the router and the message, so build it within the call of ask().
template <class Envelope = inner::OnlyCarrier, class... Envelopes, class Message, class Filling = inner::NoFilling>
auto packed(const PackRouter<Envelopes...>& packs, const Message& message, Filling fill = {})
{
    using Router = PackRouter<Envelopes...>;
    using Carrier = typename Router::template CarrierOf<Message, Envelope>::Type;
    static_assert(std::is_invocable_v<const Filling&, Carrier&>, "fill is called with the envelope of the message");
    return inner::PackedCommand<Router, Carrier, Message, Filling>(packs, message, std::move(fill));
}

#ifdef __cpp_impl_coroutine

namespace inner
{

template <class Command, class... Messages>
class [[nodiscard]] PackAskRequest : private Command, public AskRequest<PackAnswer<Messages>...>
{
public:
    PackAskRequest(const Command& command, CCommandSocket& socket, std::chrono::milliseconds timeOut)
        : Command(command), AskRequest<PackAnswer<Messages>...>{socket, *this, timeOut}
    {
    }
    // The request refers to this object.
    PackAskRequest(const PackAskRequest&) = delete;
    PackAskRequest& operator=(const PackAskRequest&) = delete;
};

} // namespace inner

// To be awaited at once, in a Task: sends the message and returns a Reply<PackAnswer<Messages>...>. fill as in
// PackRouter::send().
template <class... Messages, class... Envelopes, class Message, class Filling = inner::NoFilling>
auto askPack(const PackRouter<Envelopes...>& packs, CCommandSocket& socket, const Message& message,
             std::chrono::milliseconds timeOut, Filling fill = {})
{
    auto command = packed(packs, message, std::move(fill));
    return inner::PackAskRequest<decltype(command), Messages...>(command, socket, timeOut);
}

#endif

} // namespace host
