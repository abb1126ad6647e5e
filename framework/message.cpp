#include "framework/message.h"

#include "framework/buffer.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/stream.h"
#include "framework/string_helper.h"

namespace zet
{

namespace
{

bool isClassName(const char* name, int size)
{
    for (int i = 0; i < size; ++i)
        if (name[i] <= ' ' || name[i] > '~')
            return false;
    return size > 0 && size <= Message::kMaxClassName;
}

bool writeUnguarded(OutputStream& stream, const Message& message)
{
    const String_T<char> name = StringHelper::wideToUtf8(message.getClassName());
    const int size = name.getLength();
    if (!isClassName(name.getBuffer(), size))
        return false;
    stream << Varint{static_cast<unsigned long long>(size)};
    return stream.write(name.getBuffer(), size) == size && message.exportTo(stream);
}

Unknown::Handle_T<Message> readUnguarded(InputStream& stream)
{
    Varint size;
    stream >> size;
    char name[Message::kMaxClassName + 1] = {};
    if (size.m_Value > static_cast<unsigned long long>(Message::kMaxClassName))
        return nullptr;
    const int count = static_cast<int>(size.m_Value);
    if (stream.read(name, count) != count || !isClassName(name, count))
        return nullptr;
    const Unknown::Handle_T<Unknown> object = Unknown::RtFactory::create(StringHelper::utf8ToWide(name));
    const Unknown::Handle_T<Message> message = object.castTo<Message>();
    return message && message->importFrom(stream) ? message : nullptr;
}

} // namespace

bool Message::importFrom(InputStream&)
{
    return true;
}

bool Message::exportTo(OutputStream&) const
{
    return true;
}

bool Message::writeWhole(OutputStream& stream, const Message& message)
{
    try
    {
        return writeUnguarded(stream, message);
    }
    catch (const Exception& fault)
    {
        fault.report();
    }
    catch (const std::exception& fault)
    {
        Log::error(L"Message (%s) is not written: %s", message.getClassName(), StringHelper::utf8ToWide(fault.what()));
    }
    return false;
}

Unknown::Handle_T<Message> Message::readWhole(InputStream& stream)
{
    try
    {
        return readUnguarded(stream);
    }
    catch (const Exception& fault)
    {
        if (PeerLog::takesLine())
            fault.report();
    }
    catch (const std::exception& fault)
    {
        if (PeerLog::takesLine())
            Log::error(L"Message is not read: %s", StringHelper::utf8ToWide(fault.what()));
    }
    return nullptr;
}

} // namespace zet
