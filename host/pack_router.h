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
// Client and server use the same numbers; set them in one function that both call. The social messages have their
// numbers by protocol: social.on<CmdSocialOccupyAPIRequest>(handler).
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
    // Names the envelopes in the order of the bits below. isByPair: two messages may have one number if no envelope
    // carries both.
    PackTable(std::vector<const std::type_info*> envelopes, bool isByPair)
        : m_Envelopes(std::move(envelopes)), m_IsByPair(isByPair)
    {
    }

    // Sets the number of a message. carriers has a bit for each envelope that carries it. The same number for the same
    // message again is accepted. Otherwise false, logged, and the table cannot be installed.
    bool add(int number, int highest, const std::type_info& message, unsigned int carriers);
    // Refuses, as above, a number for a message whose class has another one. Always false.
    bool refuseOther(int number, int own, const std::type_info& message);
    // Refuses, as above, a handler for a message without a number. Always false.
    bool refuseUnnumbered(const std::type_info& message);
    // Notes a handler for an added message. As above, false for the second one.
    bool handle(const std::type_info& message);
    // Whether everything so far was accepted and there is a handler; otherwise logs. add() is refused from then on.
    bool close();
    // 0 for a message without a number.
    int getNumber(const std::type_info& message) const;
    // Logs that a message without a number is not sent. Always false.
    bool reportUnnumbered(const std::type_info& message) const;
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
    bool m_IsByPair;
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
// Logs that a message does not answer the request that it is the reply to. Always false.
COMMONGROUND_API bool reportOtherPair(const std::type_info& message, int number, int request);

// A message whose class has its number, as the social ones do.
template <class Message>
concept HasOwnNumber = requires(const Message& message)
{
    static_cast<int>(message.getPackType());
};

struct NoPreparation
{
    template <class Message>
    void operator()(Message&) const
    {
    }
};
struct NoFilling
{
    template <class Envelope>
    void operator()(Envelope&) const
    {
    }
};

// The handler of a message in one envelope.
template <class Envelope>
class PackSlot
{
public:
    virtual ~PackSlot() = default;
    virtual void receive(CCommandSocket& socket, Envelope& envelope) = 0;
};

// The callables of a message, shared by the slots of all envelopes that carry it.
template <class Handler, class Preparation>
struct PackCallables
{
    Handler m_Handler;
    Preparation m_Prepare;
};

template <class Envelope, class Message, class Handler, class Preparation>
class PackSlot_T final : public PackSlot<Envelope>
{
    static constexpr bool kTakesEnvelope = std::is_invocable_v<Handler&, CCommandSocket&, Message&, Envelope&>;
    static_assert(kTakesEnvelope || std::is_invocable_v<Handler&, CCommandSocket&, Message&>,
                  "the handler of on<Message>() takes (CCommandSocket&, Message&), or the envelope too");

public:
    using Callables = PackCallables<Handler, Preparation>;

    explicit PackSlot_T(std::shared_ptr<Callables> callables) : m_Callables(std::move(callables)) {}

    void receive(CCommandSocket& socket, Envelope& envelope) override
    {
        auto& data = envelope.m_PackData;
        Message message;
        m_Callables->m_Prepare(message);
        if (!message.Read(&data))
            return reportUnreadPack(typeid(Message), envelope.m_PackType, data.GetDataSize(), socket);
        if (const int left = data.GetDataSize() - data.GetReadPointer(); left != 0)
            reportLongPack(typeid(Message), envelope.m_PackType, left, data.GetDataSize(), socket);
        if constexpr (kTakesEnvelope)
            m_Callables->m_Handler(socket, message, envelope);
        else
            m_Callables->m_Handler(socket, message);
    }

private:
    std::shared_ptr<Callables> m_Callables;
};

template <class Envelope>
using PackSlots = std::unordered_map<int, std::shared_ptr<PackSlot<Envelope>>>;

// Means the only envelope of a router that carries the message.
class OnlyCarrier;

} // namespace inner

// The messages of one feature, in all of its envelopes. The families that share an envelope, like all that travel in
// CCmdMatchPackRequest and CCmdMatchPackReply, share one numbering, and so one router.
//
// Numbers and handlers are set at start, then install() is called once. A number that is 0 or used twice, or a message
// with two numbers or two handlers, is logged and makes install() false. A message that none of the envelopes carries
// does not compile. Received messages are handled on the thread of their socket; the dispatch allocates nothing of its
// own.
//
// In the social and the void-data envelopes a request and its reply may have the same number (isNumberedByPair). A
// message whose class has a getPackType(), as all social ones, has that number: it needs none here, and any other is
// refused.
//
// A message with an unknown number and one that its class cannot read are logged and dropped. If bytes are left over
// after a message was read, one line is logged and the handler is called: some messages leave bytes by their
// definition.
//
// LIFETIME: the Handlers and the router may be destroyed in either order, but not while a handler of the router runs.
// After the router, its messages have unknown numbers.
template <class... Envelopes>
class PackRouter
{
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

public:
    // Without numbers and handlers.
    PackRouter() : m_State(std::make_shared<State>()) {}
    ~PackRouter() { m_State->m_Slots = {}; }
    PackRouter(const PackRouter&) = delete;
    PackRouter& operator=(const PackRouter&) = delete;

    // Sets the number of a message in m_PackType: any but 0, and not above 65,535 in the social envelopes. For messages
    // that this process only sends; on() does the same.
    template <class Message>
    bool number(int number)
    {
        static_assert(kCarriers<Message> != 0, "no envelope of this router carries the message");
        if constexpr (inner::HasOwnNumber<Message>)
            if (const int own = Message().getPackType(); own != number)
                return m_State->m_Table.refuseOther(number, own, typeid(Message));
        return m_State->m_Table.add(number, kHighest, typeid(Message), kCarriers<Message>);
    }

    // Sets the number and the handler of a message. The handler takes (CCommandSocket&, Message&), or the envelope as a
    // third argument too. The message lives only during the call. A message that two envelopes carry is handled in
    // both.
    //
    // prepare is called with each new message before it is read. A message that is read into the elements that its
    // lists have (isReadIntoElements) does not compile without it: received elements beyond them are dropped.
    template <class Message, class Handler, class Preparation = inner::NoPreparation>
    bool on(int number, Handler handler, Preparation prepare = {})
    {
        static_assert(std::is_invocable_v<Preparation&, Message&>, "the preparation of on<Message>() takes (Message&)");
        static_assert(!isReadIntoElements<Message> || !std::is_same_v<Preparation, inner::NoPreparation>,
                      "the message is read into the elements that its lists have: give on<Message>() a callable after "
                      "the handler that sizes them");
        if (!this->number<Message>(number) || !m_State->m_Table.handle(typeid(Message)))
            return false;
        using Callables = inner::PackCallables<Handler, Preparation>;
        const std::shared_ptr<Callables> callables(new Callables{std::move(handler), std::move(prepare)});
        (addSlot<Message, Envelopes>(number, callables), ...);
        return true;
    }
    // The same for a message that has its number: from number() before, or from its class. False, and logged, for one
    // that has none.
    template <class Message, class Handler, class Preparation = inner::NoPreparation>
    requires(!std::is_convertible_v<Handler, int>) bool on(Handler handler, Preparation prepare = {})
    {
        int number = 0;
        if constexpr (inner::HasOwnNumber<Message>)
            number = Message().getPackType();
        else if (number = m_State->m_Table.getNumber(typeid(Message)); number == 0)
            return m_State->m_Table.refuseUnnumbered(typeid(Message));
        return on<Message>(number, std::move(handler), std::move(prepare));
    }

    // Installs a handler for each envelope that carries a message with a handler. False, and logged, if anything was
    // refused, if no message has a handler, or if the Handlers has a handler for an envelope already; then none is
    // installed.
    bool install(Handlers& handlers)
    {
        return m_State->m_Table.close() && (canInstall<Envelopes>(handlers) && ...) &&
               (installEnvelope<Envelopes>(handlers) && ...);
    }

    // The envelope that carries a message; Envelope must be named for a message that two of them carry.
    template <class Message, class Envelope = inner::OnlyCarrier>
    struct CarrierOf
    {
        using Type = typename decltype(chooseCarrier<Envelope, Message>())::type;
    };

    // Writes a message and its number into an envelope, as send() does. False, and logged, as there.
    template <class Envelope, class Message>
    bool pack(Envelope& envelope, const Message& message) const
    {
        static_assert(isCarriedBy<Message, Envelope>, "the envelope does not carry the message");
        int number = 0;
        if constexpr (inner::HasOwnNumber<Message>)
            number = message.getPackType();
        else
            number = m_State->m_Table.getNumber(typeid(Message));
        if (number == 0)
            return m_State->m_Table.reportUnnumbered(typeid(Message));
        envelope.m_PackType = static_cast<decltype(envelope.m_PackType)>(number);
        return message.Write(&envelope.m_PackData) || inner::reportUnwrittenPack(typeid(Message));
    }

    // Sends a message in the envelope that carries it. Envelope must be named for a message that two of them carry.
    // fill is called last before sending, with the envelope, for fields beside the message such as m_Extra. False, and
    // logged, for a message without a number and one that does not fit; or what CCommandSocket::send() returns.
    template <class Envelope = inner::OnlyCarrier, class Message, class Filling = inner::NoFilling>
    bool send(CCommandSocket& socket, const Message& message, Filling fill = {}) const
    {
        typename CarrierOf<Message, Envelope>::Type envelope;
        return sendIn(socket, envelope, message, fill);
    }

    // Sends a message in reply to an envelope: with its client index, client address, account name and pack index, and
    // with its two frame addresses exchanged. fill as above, for fields such as m_Error and m_Msg. False, and logged,
    // also for a message whose class has another number than the request, where pairs have one.
    template <class Envelope = inner::OnlyCarrier, class Request, class Message, class Filling = inner::NoFilling>
    bool reply(CCommandSocket& socket, const Request& request, const Message& message, Filling fill = {}) const
    {
        if constexpr (inner::HasOwnNumber<Message> && isNumberedByPair<Request>)
            if (message.getPackType() != request.m_PackType)
                return inner::reportOtherPair(typeid(Message), message.getPackType(), request.m_PackType);
        typename CarrierOf<Message, Envelope>::Type envelope;
        envelope.SetClientIndex(request.GetClientIndex());
        envelope.m_ClientAddress = request.m_ClientAddress;
        envelope.m_AccountName = request.m_AccountName;
        envelope.SetAddress(request.GetTargetAddress(), request.GetFromAddress());
        if constexpr (requires { envelope.m_PackIndex = request.m_PackIndex; })
            envelope.m_PackIndex = request.m_PackIndex;
        return sendIn(socket, envelope, message, fill);
    }

    // The table as one line of JSON, in ascending order of numbers:
    //   {"envelopes":["CCmdHomePackRequest",...],
    //    "messages":[{"number":1,"message":"HomePack_LoadData_Request","envelopes":[...],"handled":true},...]}
    zet::String_T<wchar_t> toJson() const { return m_State->m_Table.toJson(); }

private:
    struct State
    {
        State() : m_Table({&typeid(Envelopes)...}, (isNumberedByPair<Envelopes> && ...)) {}

        inner::PackTable m_Table;
        std::tuple<inner::PackSlots<Envelopes>...> m_Slots;
    };

    template <class Envelope, class Message, class Filling>
    bool sendIn(CCommandSocket& socket, Envelope& envelope, const Message& message, Filling& fill) const
    {
        static_assert(std::is_invocable_v<Filling&, Envelope&>,
                      "the last argument of send() and reply() is called with the envelope of the message");
        if (!pack(envelope, message))
            return false;
        fill(envelope);
        return socket.send(envelope);
    }

    template <class Message, class Envelope, class Handler, class Preparation>
    void addSlot(int number, const std::shared_ptr<inner::PackCallables<Handler, Preparation>>& callables)
    {
        if constexpr (isCarriedBy<Message, Envelope>)
            std::get<inner::PackSlots<Envelope>>(m_State->m_Slots)[number] =
                std::make_shared<inner::PackSlot_T<Envelope, Message, Handler, Preparation>>(callables);
    }

    template <class Envelope>
    bool canInstall(const Handlers& handlers) const
    {
        return std::get<inner::PackSlots<Envelope>>(m_State->m_Slots).empty() || handlers.canInstall<Envelope>();
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
