// Messages of net sessions on fuzzed bytes: as a whole message, as the form of a command message, and as the JSON of
// its properties. Accepted input round-trips.
#include "framework/memory_stream.h"
#include "framework/string_helper.h"
#include "fuzz/support/budget.h"
#include "fuzz/support/require.h"
#include "packaging/cmd_packager.h"
#include "transport/net_message.h"

#include <cstdint>
#include <string>

namespace
{

using MessageHandle = zet::Unknown::Handle_T<zet::Message>;

using fuzz::require;

std::string written(const zet::Message& message)
{
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream out(store.get());
    require(zet::Message::writeWhole(out, message));
    std::string bytes(static_cast<size_t>(store->getSize()), '\0');
    store->read(bytes.data(), store->getSize());
    return bytes;
}

void checkJson(zet::Message& message)
{
    zet::JsonValue value;
    require(zet::PropertyHelper::convertPropertyToJson(&message, value));
    zet::Unknown::Handle_T<zet::Property> made;
    require(zet::PropertyHelper::convertPropertyToClass(value, made));
    require(written(dynamic_cast<zet::Message&>(*made)) == written(message));
}

void checkMessage(zet::Message& message, size_t size)
{
    const std::string bytes = written(message);
    // Counts in their shortest form; an all-zero address in the input is omitted in the output.
    require(bytes.size() <= size);
    const auto store = zet::MemoryStream::createInstance();
    store->write(bytes.data(), static_cast<int>(bytes.size()));
    zet::InputStream in(store.get());
    const MessageHandle again = zet::Message::readWhole(in);
    require(again && in.isEmpty() && written(*again) == bytes);
    checkJson(message);
    if (auto* const command = dynamic_cast<Msg_NetCommand*>(&message))
        if (const auto packager = convertToNetCommand(command))
            require(convertToNetMessage(packager.get())->data.getBufferSize() <= command->data.getBufferSize());
}

void checkText(const zet::String_T<wchar_t>& text)
{
    zet::JsonValue value;
    if (!zet::Json::parseValue(text, value))
        return;
    const auto command = Msg_NetCommand::createInstance();
    // After a failure the message is still valid.
    command->importProperty(value);
    checkJson(*command);
    zet::Unknown::Handle_T<zet::Property> made;
    if (zet::PropertyHelper::convertPropertyToClass(value, made) && made)
        if (auto* const message = dynamic_cast<zet::Message*>(made.get()))
            checkJson(*message);
    NetMessageList list;
    if (zet::PropertyFactory::getPropertyConverter(L"NetMessageList")->convertFromJson(value, &list))
        for (const auto& message : list)
            if (message)
                checkJson(*message);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Budget budget(size);
    const auto whole = zet::MemoryStream::createInstance();
    whole->write(data, static_cast<int>(size));
    zet::InputStream in(whole.get());
    if (const MessageHandle message = zet::Message::readWhole(in))
        checkMessage(*message, size - static_cast<size_t>(in.available()));

    const auto bare = zet::MemoryStream::createInstance();
    bare->write(data, static_cast<int>(size));
    in = zet::InputStream(bare.get());
    const auto command = Msg_NetCommand::createInstance();
    if (command->importFrom(in))
        checkMessage(*command, size + 1 + sizeof "Msg_NetCommand");
    const std::string bytes(data, data + size);
    checkText(zet::StringHelper::utf8ToWide(bytes.c_str()));
    return 0;
}
