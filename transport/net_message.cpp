#include "transport/net_message.h"

#include "framework/class_id.h"
#include "framework/property_types.h"
#include "framework/thread.h"
#include "packaging/cmd_packager.h"

namespace
{

constexpr const wchar_t* kNetMessage = L"NetMessage";
constexpr const wchar_t* kNetCommand = L"Msg_NetCommand";
constexpr const wchar_t* kTimestamp = L"Mon Dec  9 15:18:50 2019";

enum Flags : unsigned char
{
    kHasFrom = 1,
    kHasTarget = 2
};

// The table of a property class.
struct PropertyTable
{
    zet::Mutex m_Mutex;
    zet::PropertyAttributes m_Attributes;
    bool m_IsFilled = false;
};

// Created by their first user and never destroyed: other files may use them while the library is loaded and while the
// process ends.
PropertyTable& tableOfNetMessage()
{
    static PropertyTable& table = *new PropertyTable;
    return table;
}

PropertyTable& tableOfNetCommand()
{
    static PropertyTable& table = *new PropertyTable;
    return table;
}

const zet::PropertyAttributes& attributesOf(PropertyTable& table, void (*registerProperty)())
{
    registerProperty();
    // Once filled, a table does not change.
    const std::lock_guard lock(table.m_Mutex);
    return table.m_Attributes;
}

// Turns an exception of the stream layer, which means a cut stream, into a report and false.
template <class Call>
bool reporting(Call call)
{
    try
    {
        call();
        return true;
    }
    catch (const zet::Exception& fault)
    {
        fault.report();
        return false;
    }
}

template <class Class>
zet::Unknown* make()
{
    return Class::createMessage_();
}

template <class Container>
using HandlesRegistration = zet::PropertyConverterRegistration<zet::HandlesConverter_T<Container>>;

// Registers both classes at load.
struct Registrations
{
    Registrations()
    {
        NetMessage::registerProperty_();
        Msg_NetCommand::registerProperty_();
    }
    zet::RtRegistration m_NetMessage{kNetMessage, &make<NetMessage>};
    zet::RtRegistration m_NetCommand{kNetCommand, &make<Msg_NetCommand>};
    HandlesRegistration<NetMessageArray> m_NetMessageArray{L"NetMessageArray"};
    HandlesRegistration<NetMessageList> m_NetMessageList{L"NetMessageList"};
    HandlesRegistration<Msg_NetCommandArray> m_NetCommandArray{L"Msg_NetCommandArray"};
    HandlesRegistration<Msg_NetCommandList> m_NetCommandList{L"Msg_NetCommandList"};
};
const Registrations s_Registrations;

} // namespace

zet::Unknown::Handle_T<NetMessage> NetMessage::createInstance()
{
    return new NetMessage;
}

zet::Message* NetMessage::createMessage_()
{
    return new NetMessage;
}

const wchar_t* NetMessage::getClassName_()
{
    return kNetMessage;
}

unsigned long NetMessage::getClassId_()
{
    return zet::classIdOf(kNetMessage);
}

void NetMessage::registerProperty_()
{
    static const zet::PropertyAttribute_T<&NetMessage::fromAddress> from(L"fromAddress", L"zet::Uuid",
                                                                         L"From Address.");
    static const zet::PropertyAttribute_T<&NetMessage::targetAddress> target(L"targetAddress", L"zet::UuidArray",
                                                                             L"Target Address.");
    PropertyTable& table = tableOfNetMessage();
    const std::lock_guard lock(table.m_Mutex);
    if (std::exchange(table.m_IsFilled, true))
        return;
    zet::PropertyAttributeHelper::registerPropertyAttribute(table.m_Attributes, from);
    zet::PropertyAttributeHelper::registerPropertyAttribute(table.m_Attributes, target);
}

zet::Unknown* NetMessage::rtCreateInstance() const
{
    return createMessage_();
}

zet::Unknown* NetMessage::clone() const
{
    return new NetMessage(*this);
}

const wchar_t* NetMessage::getClassName() const
{
    return getClassName_();
}

unsigned long NetMessage::getClassId() const
{
    return getClassId_();
}

const wchar_t* NetMessage::getPropertyType() const
{
    return getClassName_();
}

const zet::PropertyAttributes& NetMessage::getPropertyAttributes() const
{
    return attributesOf(tableOfNetMessage(), &NetMessage::registerProperty_);
}

const wchar_t* NetMessage::getClassTimestamp() const
{
    return kTimestamp;
}

bool NetMessage::importFrom(zet::InputStream& stream)
{
    return reporting([&] { stream >> *this; });
}

bool NetMessage::exportTo(zet::OutputStream& stream) const
{
    return reporting([&] { stream << *this; });
}

zet::OutputStream& operator<<(zet::OutputStream& stream, const NetMessage& message)
{
    stream << static_cast<const zet::Message&>(message);
    const bool hasFrom = !message.fromAddress.isNull();
    const bool hasTarget = !message.targetAddress.empty();
    const unsigned char flags = static_cast<unsigned char>((hasFrom ? kHasFrom : 0) | (hasTarget ? kHasTarget : 0));
    if (stream.write(&flags, 1) != 1)
        throw zet::Exception(L"NetMessage::operator <<", __FILE__, __LINE__);
    if (hasFrom)
        stream << message.fromAddress;
    if (hasTarget)
        stream << message.targetAddress;
    return stream;
}

zet::InputStream& operator>>(zet::InputStream& stream, NetMessage& message)
{
    stream >> static_cast<zet::Message&>(message);
    unsigned char flags = 0;
    if (stream.read(&flags, 1) != 1)
        throw zet::Exception(L"NetMessage::operator >>", __FILE__, __LINE__);
    message.fromAddress = zet::Uuid();
    message.targetAddress.clear();
    if (flags & kHasFrom)
        stream >> message.fromAddress;
    if (flags & kHasTarget)
        stream >> message.targetAddress;
    return stream;
}

const zet::Member_T<Msg_NetCommand> Msg_NetCommand::_mtbl[1] = {zet::memberOf<&Msg_NetCommand::data>(L"data")};

zet::Unknown::Handle_T<Msg_NetCommand> Msg_NetCommand::createInstance()
{
    return new Msg_NetCommand;
}

zet::Message* Msg_NetCommand::createMessage_()
{
    return new Msg_NetCommand;
}

const wchar_t* Msg_NetCommand::getClassName_()
{
    return kNetCommand;
}

unsigned long Msg_NetCommand::getClassId_()
{
    return zet::classIdOf(kNetCommand);
}

void Msg_NetCommand::registerProperty_()
{
    static const zet::PropertyAttribute_T<&Msg_NetCommand::data> frame(L"data", L"zet::Buffer", L"data");
    const zet::PropertyAttributes& base = attributesOf(tableOfNetMessage(), &NetMessage::registerProperty_);
    PropertyTable& table = tableOfNetCommand();
    const std::lock_guard lock(table.m_Mutex);
    if (std::exchange(table.m_IsFilled, true))
        return;
    zet::PropertyAttributeHelper::mergePropertyAttribute(table.m_Attributes, base);
    zet::PropertyAttributeHelper::registerPropertyAttribute(table.m_Attributes, frame);
}

zet::Unknown* Msg_NetCommand::rtCreateInstance() const
{
    return createMessage_();
}

zet::Unknown* Msg_NetCommand::clone() const
{
    return new Msg_NetCommand(*this);
}

const wchar_t* Msg_NetCommand::getClassName() const
{
    return getClassName_();
}

unsigned long Msg_NetCommand::getClassId() const
{
    return getClassId_();
}

const wchar_t* Msg_NetCommand::getPropertyType() const
{
    return getClassName_();
}

const zet::PropertyAttributes& Msg_NetCommand::getPropertyAttributes() const
{
    return attributesOf(tableOfNetCommand(), &Msg_NetCommand::registerProperty_);
}

const wchar_t* Msg_NetCommand::getClassTimestamp() const
{
    return kTimestamp;
}

bool Msg_NetCommand::importFrom(zet::InputStream& stream)
{
    return reporting(
        [&]
        {
            stream >> static_cast<NetMessage&>(*this);
            zet::readMtbl(stream, *this, _mtbl);
        });
}

bool Msg_NetCommand::exportTo(zet::OutputStream& stream) const
{
    return reporting(
        [&]
        {
            stream << static_cast<const NetMessage&>(*this);
            zet::writeMtbl(stream, *this, _mtbl);
        });
}

zet::Unknown::Handle_T<Msg_NetCommand> convertToNetMessage(const CCmdPackager* packager)
{
    if (!packager)
        return nullptr;
    const auto message = Msg_NetCommand::createInstance();
    return CCmdPackager_packageToBuffer(*packager, message->data) ? message : nullptr;
}

zet::SharedPtr<CCmdPackager> convertToNetCommand(Msg_NetCommand* message)
{
    if (!message)
        return nullptr;
    const auto packager = std::make_shared<CCmdPackager>();
    return CCmdPackager_bufferToPackage(message->data, *packager) ? packager : nullptr;
}
