#include "framework/property.h"

#include "framework/buffer.h"
#include "framework/property_types.h"
#include "framework/uuid.h"

#include <map>
#include <mutex>

namespace zet
{

namespace
{

String_T<wchar_t> hexOf(const void* data, int size)
{
    static constexpr wchar_t kDigits[] = L"0123456789abcdef";
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    String_T<wchar_t> text;
    // A buffer has up to 2^31 bytes, a text up to as many units.
    if (size > 0x3FFFFFFF)
        return text;
    wchar_t* out = text.resizeForOverwrite(2 * size);
    for (int i = 0; i < size; ++i)
    {
        *out++ = kDigits[bytes[i] >> 4];
        *out++ = kDigits[bytes[i] & 15];
    }
    return text;
}

int digitOf(wchar_t unit)
{
    if (unit >= L'0' && unit <= L'9')
        return unit - L'0';
    if (unit >= L'a' && unit <= L'f')
        return unit - L'a' + 10;
    if (unit >= L'A' && unit <= L'F')
        return unit - L'A' + 10;
    return -1;
}

// Parses hexadecimal digits, two per byte.
bool readHex(const String_T<wchar_t>& text, void* data, int size)
{
    if (text.getLength() != 2 * size)
        return false;
    unsigned char* bytes = static_cast<unsigned char*>(data);
    for (int i = 0; i < size; ++i)
    {
        const int high = digitOf(text[2 * i]);
        const int low = digitOf(text[2 * i + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes[i] = static_cast<unsigned char>(high << 4 | low);
    }
    return true;
}

class UuidConverter final : public PropertyConverter_T<Uuid>
{
public:
    bool toJson(const Uuid& id, JsonValue& json) const override
    {
        json = hexOf(&id, sizeof id);
        return true;
    }
    bool fromJson(const JsonValue& json, Uuid& id) const override { return readHex(json.asString(), &id, sizeof id); }
};

class UuidArrayConverter final : public PropertyConverter_T<std::vector<Uuid>>
{
public:
    bool toJson(const std::vector<Uuid>& ids, JsonValue& json) const override
    {
        json = JsonValue(JsonValue::kArray);
        int index = 0;
        for (const Uuid& id : ids)
            m_Each.toJson(id, json[index++]);
        return true;
    }
    bool fromJson(const JsonValue& json, std::vector<Uuid>& ids) const override
    {
        if (!json.isArray())
            return false;
        for (int i = 0; i < json.size(); ++i)
            if (!m_Each.fromJson(json[i], ids.emplace_back()))
                return false;
        return true;
    }

private:
    UuidConverter m_Each;
};

class BufferConverter final : public PropertyConverter_T<Buffer>
{
public:
    bool toJson(const Buffer& buffer, JsonValue& json) const override
    {
        const int size = buffer.getBufferSize();
        const String_T<wchar_t> text = hexOf(buffer.getBuffer(), size);
        json = text;
        return text.getLength() / 2 == size;
    }
    bool fromJson(const JsonValue& json, Buffer& buffer) const override
    {
        const String_T<wchar_t> text = json.asString();
        const int size = text.getLength() / 2;
        return json.getType() == JsonValue::kString && buffer.setBufferSize(size) == size &&
               readHex(text, buffer.getBuffer(), size);
    }
};

struct Converters
{
    UuidConverter m_Uuid;
    UuidArrayConverter m_UuidArray;
    BufferConverter m_Buffer;
    std::mutex m_Mutex;
    std::map<String_T<wchar_t>, const IPropertyConverter*> m_Map{
        {L"zet::Uuid", &m_Uuid}, {L"zet::UuidArray", &m_UuidArray}, {L"zet::Buffer", &m_Buffer}};
};

// Constructors and destructors of globals in any file add and remove types, so the table is created by its first user
// and never destroyed.
Converters& getConverters()
{
    static Converters* const converters = new Converters;
    return *converters;
}

} // namespace

void PropertyFactory::setUpPropertyConverter(const wchar_t* typeName, const IPropertyConverter& converter)
{
    Converters& converters = getConverters();
    const std::lock_guard lock(converters.m_Mutex);
    converters.m_Map.insert_or_assign(String_T<wchar_t>(typeName), &converter);
}

void PropertyFactory::tearDownPropertyConverter(const wchar_t* typeName)
{
    Converters& converters = getConverters();
    const std::lock_guard lock(converters.m_Mutex);
    converters.m_Map.erase(String_T<wchar_t>(typeName));
}

const IPropertyConverter* PropertyFactory::getPropertyConverter(const wchar_t* typeName)
{
    Converters& converters = getConverters();
    const std::lock_guard lock(converters.m_Mutex);
    const auto place = converters.m_Map.find(String_T<wchar_t>(typeName));
    return place == converters.m_Map.end() ? nullptr : place->second;
}

} // namespace zet
