// From the envelope of a feature to the message inside, and back: a number for each message of the feature, and a
// handler for each message that this process receives.
//
//   host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply> home;
//   home.number<HomePack_LoadData_Reply>(2);
//   home.on<HomePack_LoadData_Request>(1, [&](CCommandSocket& socket, HomePack_LoadData_Request& load,
//                                             CCmdHomePackRequest& envelope) { ... });
//   home.install(handlers);
//   ...
//   home.reply(socket, envelope, HomePack_LoadData_Reply());
//
// Client and server state the same numbers; a function that both call states them once.
#pragma once

#include "framework/string.h"
#include "host/handlers.h"
#include "host/pack_families.h"

#include <limits>
#include <memory>
#include <tuple>
#include <unordered_map>

namespace host
{

namespace inner
{

// The numbers of a feature's messages, without their types.
class COMMONGROUND_API PackTable
{
public:
    // Names the envelopes in the order of the bits below.
    explicit PackTable(std::vector<const std::type_info*> envelopes) : m_Envelopes(std::move(envelopes)) {}

    // Gives a message its number. carriers has a bit for each envelope that carries it. The same number for the same
    // message again is accepted. Otherwise false, logged, and the table cannot be installed.
    bool add(int number, int highest, const std::type_info& message, unsigned int carriers);
    // Notes a handler for an added message. As above, false for the second one.
    bool handle(int number, const std::type_info& message);
    // Whether everything so far was accepted and there is a handler; otherwise logs. add() is refused from then on.
    bool close();
    // 0, and logged, for a message without a number.
    int getNumber(const std::type_info& message) const;
    zet::String_T<wchar_t> toJson() const;

private:
    struct Row
    {
        int m_Number;
        const std::type_info* m_Message;
        unsigned int m_Carriers;
        bool m_IsHandled = false;
    };

    zet::String_T<wchar_t> getEnvelopeNames() const;
    bool refuse(const zet::String_T<wchar_t>& reason);

    std::vector<const std::type_info*> m_Envelopes;
    // In ascending order of numbers.
    std::vector<Row> m_Rows;
    bool m_IsSound = true;
    bool m_IsClosed = false;
};

// One line each, within the peer's share of the log.
COMMONGROUND_API void reportUnknownPack(const std::type_info& envelope, int number, CCommandSocket& socket);
COMMONGROUND_API void reportUnreadPack(const std::type_info& message, int number, int size, CCommandSocket& socket);
COMMONGROUND_API void reportLongPack(const std::type_info& message, int number, int left, int size,
                                     CCommandSocket& socket);
// Logs that a message does not fit its envelope. Always false.
COMMONGROUND_API bool reportUnwrittenPack(const std::type_info& message);

// The handler of a message in one envelope.
template <class Envelope>
class PackSlot
{
public:
    virtual ~PackSlot() = default;
    virtual void receive(CCommandSocket& socket, Envelope& envelope) = 0;
};

template <class Envelope, class Message, class Handler>
class PackSlot_T final : public PackSlot<Envelope>
{
public:
    explicit PackSlot_T(Handler handler) : m_Handler(std::move(handler)) {}

    void receive(CCommandSocket& socket, Envelope& envelope) override
    {
        auto& data = envelope.m_PackData;
        Message message;
        if (!message.Read(&data))
            return reportUnreadPack(typeid(Message), envelope.m_PackType, data.GetDataSize(), socket);
        if (const int left = data.GetDataSize() - data.GetReadPointer(); left != 0)
            reportLongPack(typeid(Message), envelope.m_PackType, left, data.GetDataSize(), socket);
        if constexpr (std::is_invocable_v<Handler&, CCommandSocket&, Message&, Envelope&>)
            m_Handler(socket, message, envelope);
        else
            m_Handler(socket, message);
    }

private:
    Handler m_Handler;
};

template <class Envelope>
using PackSlots = std::unordered_map<int, std::shared_ptr<PackSlot<Envelope>>>;

// Stands for the one envelope of a router that carries the message.
class OnlyCarrier;

} // namespace inner

// The messages of one feature, in all of its envelopes. The families that share an envelope, like all that travel in
// CCmdMatchPackRequest and CCmdMatchPackReply, share one numbering, and so one router.
//
// Everything is stated at start, then install() is called once. A number that is 0 or given twice, a message with two
// numbers or two handlers is logged and makes install() false. A message that none of the envelopes carries does not
// compile. Received messages are handled on the thread of their socket; the dispatch allocates nothing of its own.
//
// A message with an unknown number and one that its class cannot read are logged and dropped. If bytes are left over
// after a message was read, one line is logged and the handler is called: some messages leave bytes by their order.
//
// LIFETIME: the Handlers and the router may be destroyed in either order, but not while a handler of the router runs.
// After the router, its messages have unknown numbers.
template <class... Envelopes>
class PackRouter
{
public:
    PackRouter() : m_State(std::make_shared<State>()) {}
    ~PackRouter() { m_State->m_Slots = {}; }
    PackRouter(const PackRouter&) = delete;
    PackRouter& operator=(const PackRouter&) = delete;

    // Gives a message its number in m_PackType: any but 0, and not above 65,535 in the social envelopes. For messages
    // that this process only sends; on() does the same.
    template <class Message>
    bool number(int number)
    {
        static_assert(kCarriers<Message> != 0, "no envelope of this router carries the message");
        return m_State->m_Table.add(number, kHighest, typeid(Message), kCarriers<Message>);
    }

    // Gives a message its number, and its handler: a callable that takes (CCommandSocket&, Message&), or with the
    // envelope as a third argument. The message lives only during the call. A message that two envelopes carry is
    // handled in both.
    template <class Message, class Handler>
    bool on(int number, Handler handler)
    {
        if (!this->number<Message>(number) || !m_State->m_Table.handle(number, typeid(Message)))
            return false;
        const auto shared = std::make_shared<Handler>(std::move(handler));
        (addSlot<Message, Envelopes>(number, shared), ...);
        return true;
    }

    // Installs a handler for each envelope that carries a message with a handler. False, and logged, if anything was
    // refused, if no message has a handler, or if the Handlers has a handler for an envelope already.
    bool install(Handlers& handlers)
    {
        return m_State->m_Table.close() && (installEnvelope<Envelopes>(handlers) && ...);
    }

    // Sends a message in the envelope that carries it. Envelope must be named for a message that two of them carry.
    // False, and logged, for a message without a number and one that does not fit; or what CCommandSocket::send()
    // returns.
    template <class Envelope = inner::OnlyCarrier, class Message>
    bool send(CCommandSocket& socket, const Message& message) const
    {
        Carrier<Envelope, Message> envelope;
        return sendIn(socket, envelope, message);
    }

    // Sends a message in reply to an envelope: with its client index, client address, account name and pack index, and
    // with its two frame addresses exchanged.
    template <class Envelope = inner::OnlyCarrier, class Request, class Message>
    bool reply(CCommandSocket& socket, const Request& request, const Message& message) const
    {
        Carrier<Envelope, Message> envelope;
        envelope.SetClientIndex(request.GetClientIndex());
        envelope.m_ClientAddress = request.m_ClientAddress;
        envelope.m_AccountName = request.m_AccountName;
        envelope.SetAddress(request.GetTargetAddress(), request.GetFromAddress());
        if constexpr (requires { envelope.m_PackIndex = request.m_PackIndex; })
            envelope.m_PackIndex = request.m_PackIndex;
        return sendIn(socket, envelope, message);
    }

    // The table as one line of JSON, in ascending order of numbers:
    //   {"envelopes":["CCmdHomePackRequest",...],
    //    "messages":[{"number":1,"message":"HomePack_LoadData_Request","envelopes":[...],"handled":true},...]}
    zet::String_T<wchar_t> toJson() const { return m_State->m_Table.toJson(); }

private:
    struct State
    {
        State() : m_Table({&typeid(Envelopes)...}) {}

        inner::PackTable m_Table;
        std::tuple<inner::PackSlots<Envelopes>...> m_Slots;
    };

    // A bit for each envelope, the first one lowest.
    template <class Message>
    static constexpr unsigned int carriersOf()
    {
        unsigned int bits = 0;
        unsigned int bit = 1;
        ((bits |= isCarriedBy<Message, Envelopes> ? bit : 0, bit <<= 1), ...);
        return bits;
    }
    template <class Message>
    static constexpr unsigned int kCarriers = carriersOf<Message>();

    // The highest number that the types of m_PackType hold.
    static constexpr int highestNumber()
    {
        long long highest = std::numeric_limits<int>::max();
        ((highest = std::min<long long>(highest, std::numeric_limits<decltype(Envelopes::m_PackType)>::max())), ...);
        return static_cast<int>(highest);
    }
    static constexpr int kHighest = highestNumber();

    template <class Message, class First, class... Rest>
    static auto findCarrier()
    {
        if constexpr (isCarriedBy<Message, First>)
            return std::type_identity<First>();
        else
            return findCarrier<Message, Rest...>();
    }
    template <class Envelope, class Message>
    static auto chooseCarrier()
    {
        static_assert(kCarriers<Message> != 0, "no envelope of this router carries the message");
        if constexpr (!std::is_same_v<Envelope, inner::OnlyCarrier>)
        {
            static_assert(isCarriedBy<Message, Envelope> && (std::is_same_v<Envelope, Envelopes> || ...),
                          "the named envelope does not carry the message, or is not one of this router");
            return std::type_identity<Envelope>();
        }
        else
        {
            static_assert((kCarriers<Message> & (kCarriers<Message> - 1)) == 0,
                          "several envelopes carry the message: name one, as in send<CCmdProfilingPackReply>(...)");
            return findCarrier<Message, Envelopes...>();
        }
    }
    template <class Envelope, class Message>
    using Carrier = typename decltype(chooseCarrier<Envelope, Message>())::type;

    template <class Envelope, class Message>
    bool sendIn(CCommandSocket& socket, Envelope& envelope, const Message& message) const
    {
        const int number = m_State->m_Table.getNumber(typeid(Message));
        if (number == 0)
            return false;
        envelope.m_PackType = static_cast<decltype(envelope.m_PackType)>(number);
        if (!message.Write(&envelope.m_PackData))
            return inner::reportUnwrittenPack(typeid(Message));
        return socket.send(envelope);
    }

    template <class Message, class Envelope, class Handler>
    void addSlot(int number, const std::shared_ptr<Handler>& handler)
    {
        if constexpr (isCarriedBy<Message, Envelope>)
        {
            constexpr bool takesEnvelope = std::is_invocable_v<Handler&, CCommandSocket&, Message&, Envelope&>;
            static_assert(takesEnvelope || std::is_invocable_v<Handler&, CCommandSocket&, Message&>,
                          "the handler of on<Message>() takes (CCommandSocket&, Message&), or the envelope too");
            const auto call = [handler](CCommandSocket& socket, Message& message, Envelope& envelope)
            {
                if constexpr (takesEnvelope)
                    (*handler)(socket, message, envelope);
                else
                    (*handler)(socket, message);
            };
            std::get<inner::PackSlots<Envelope>>(m_State->m_Slots)[number] =
                std::make_shared<inner::PackSlot_T<Envelope, Message, decltype(call)>>(call);
        }
    }

    template <class Envelope>
    bool installEnvelope(Handlers& handlers)
    {
        if (std::get<inner::PackSlots<Envelope>>(m_State->m_Slots).empty())
            return true;
        return handlers.on<Envelope>(
            [state = m_State](CCommandSocket& socket, Envelope& envelope)
            {
                const auto& slots = std::get<inner::PackSlots<Envelope>>(state->m_Slots);
                if (const auto found = slots.find(envelope.m_PackType); found != slots.end())
                    found->second->receive(socket, envelope);
                else
                    inner::reportUnknownPack(typeid(Envelope), envelope.m_PackType, socket);
            });
    }

    // Shared with the installed handlers.
    std::shared_ptr<State> m_State;
};

} // namespace host
