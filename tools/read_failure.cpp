#include "tools/read_failure.h"

#include "packaging/cmd_packager.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace tools
{

using wire::Decides;
using wire::Field;
using wire::Key;
using wire::Kind;
using wire::Says;

namespace
{

bool hasWord(const Field& field, std::string_view word)
{
    return std::find(field.words.begin(), field.words.end(), word) != field.words.end();
}

// Values of ints by the offsets of their members: sizes, and counts that precede their lists.
using Numbers = std::map<size_t, int>;

// 0 if it was not read.
int valueAt(const Numbers& numbers, size_t offset)
{
    const auto found = numbers.find(offset);
    return found == numbers.end() ? 0 : found->second;
}

// Each function reads something and returns whether it succeeded, as wire::Reader does.
class ClassReader
{
public:
    ClassReader(std::string_view bytes, Limits limits) : m_Bytes(bytes), m_Limits(limits) {}

    bool object(const wire::Schema& schema);

    size_t position() const { return m_At; }
    ReadFailure failure() const;

private:
    // A name, or an index if the name is empty.
    struct Part
    {
        std::string_view m_Name;
        int m_Index = 0;
    };
    struct Scope
    {
        Numbers m_Sizes;
        Numbers m_Counts;
    };
    // Extends the path while it lives.
    class Within
    {
    public:
        Within(ClassReader& reader, std::string_view name) : m_Path(reader.m_Path) { m_Path.push_back({name}); }
        Within(ClassReader& reader, int index) : m_Path(reader.m_Path) { m_Path.push_back({{}, index}); }
        ~Within() { m_Path.pop_back(); }
        Within(const Within&) = delete;
        Within& operator=(const Within&) = delete;

    private:
        std::vector<Part>& m_Path;
    };

    // The last failure, as it happened: its texts are made for the one that decides.
    struct Failed
    {
        std::vector<Part> m_Path;
        size_t m_Offset = 0;
        int64_t m_Needed = 0;
        size_t m_Had = 0;
        // Of a refused number: what it counts, if anything, and the valid or the largest one.
        bool m_IsRefused = false;
        const char* m_Counted = nullptr;
        int64_t m_Number = 0;
        int64_t m_Valid = 0;
    };

    bool step(const Field& field, bool isIndex, Scope& scope);
    bool value(const Field& field, const Scope& scope);
    void everyElement(const Field& field, const Scope& scope);
    bool array(const Field& field, const Scope& scope, bool isTested);
    bool pair(const Field& field, const Scope& scope);
    bool list(const Field& field, const Scope& scope);
    bool element(const Field& field, const Scope& scope);
    void table(const Field& field, const Scope& scope);

    bool number(const Field& field);
    bool text();
    bool real();
    bool buffer(const Field& field);
    bool payload(const Field& field);
    bool count(std::string_view name, int& value);
    bool scalar(int size, uint32_t& bits);
    bool take(int64_t size);

    size_t left() const { return m_Bytes.size() - m_At; }
    bool hasLimits() const { return m_Limits == Limits::kOfCommands; }
    bool refuse(size_t offset, const char* counted, int64_t number, int64_t valid);

    std::string_view m_Bytes;
    Limits m_Limits;
    size_t m_At = 0;
    // The number read last.
    uint32_t m_Number = 0;
    std::vector<Part> m_Path;
    Failed m_Failed;
};

// The one value without a member that is not part of another: it starts a head.
constexpr std::string_view kVersion = "(version)";
constexpr const char* kUnits = "units";
constexpr const char* kBytes = "bytes";

bool ClassReader::refuse(size_t offset, const char* counted, int64_t number, int64_t valid)
{
    m_Failed = {m_Path, offset, 0, 0, true, counted, number, valid};
    return false;
}

bool ClassReader::take(int64_t size)
{
    if (size < 0 || static_cast<uint64_t>(size) > left())
    {
        m_Failed = {m_Path, m_At, size, left()};
        return false;
    }
    m_At += static_cast<size_t>(size);
    return true;
}

bool ClassReader::scalar(int size, uint32_t& bits)
{
    const size_t from = m_At;
    if (!take(size))
        return false;
    bits = 0;
    for (size_t i = from; i < m_At; ++i)
        bits = bits << 8 | static_cast<unsigned char>(m_Bytes[i]);
    return true;
}

bool ClassReader::count(std::string_view name, int& value)
{
    const Within within(*this, name);
    uint32_t bits = 0;
    if (!scalar(4, bits))
        return false;
    value = static_cast<int>(bits);
    return true;
}

bool ClassReader::number(const Field& field)
{
    const size_t from = m_At;
    if (!scalar(field.size, m_Number))
        return false;
    const bool isVersion = field.name.empty() && field.head;
    if (isVersion && m_Number != static_cast<uint32_t>(field.extent))
        return refuse(from, nullptr, m_Number, field.extent);
    return true;
}

bool ClassReader::real()
{
    uint32_t length = 0;
    return scalar(1, length) && take(length);
}

bool ClassReader::text()
{
    const size_t from = m_At;
    uint32_t units = 0;
    if (!scalar(1, units))
        return false;
    const uint32_t more = units >> 6;
    units &= 0x3F;
    for (uint32_t i = 0; i < more; ++i)
    {
        uint32_t next = 0;
        if (!scalar(1, next))
            return false;
        units = units << 8 | next;
    }
    if (hasLimits() && units > static_cast<uint32_t>(CCmdPackager::kMaxTextUnits))
        return refuse(from, kUnits, units, CCmdPackager::kMaxTextUnits);
    return take(int64_t(units) * 2);
}

bool ClassReader::buffer(const Field& field)
{
    const size_t from = m_At;
    int size = 0;
    if (!count("(size)", size))
        return false;
    if (hasLimits() && !hasWord(field, "Unlimited") && size > CCmdPackager::kMaxBufferSize)
        return refuse(from, kBytes, size, CCmdPackager::kMaxBufferSize);
    return take(size);
}

bool ClassReader::payload(const Field& field)
{
    const size_t from = m_At;
    int size = 0;
    if (!count("(size)", size))
        return false;
    const bool endsWell = hasWord(field, "EndsWellBeforeItsBytes");
    if (endsWell && size <= 0)
        return true;
    // The usual reading takes the bytes before it finds that they do not fit.
    const int64_t most = endsWell ? field.extent : CCmdPackager::kMaxDataSize;
    if (size > most)
        return refuse(from, kBytes, size, most);
    if (!take(size))
        return false;
    return size <= field.extent || refuse(from, kBytes, size, field.extent);
}

bool ClassReader::value(const Field& field, const Scope& scope)
{
    switch (field.kind)
    {
    case Kind::kNumber:
        return number(field);
    case Kind::kFloat:
        return real();
    case Kind::kText:
        return text();
    case Kind::kRaw:
        return take(field.extent);
    case Kind::kBuffer:
        return buffer(field);
    case Kind::kPayload:
        return payload(field);
    case Kind::kRecord:
    {
        const Within within(*this, ".");
        return object(*field.record);
    }
    case Kind::kArray:
        return array(field, scope, true);
    case Kind::kPair:
        return pair(field, scope);
    case Kind::kList:
        return list(field, scope);
    case Kind::kCount:
    case Kind::kTable:
        break;
    }
    return true;
}

bool ClassReader::pair(const Field& field, const Scope& scope)
{
    {
        const Within within(*this, ".first");
        if (!value(field.parts[0], scope))
            return false;
    }
    const Within within(*this, ".second");
    return value(field.parts[1], scope);
}

bool ClassReader::array(const Field& field, const Scope& scope, bool isTested)
{
    const int size = field.says == Says::kMember ? valueAt(scope.m_Sizes, field.sizeOffset) : field.extent;
    for (int i = 0; i < size; ++i)
    {
        const Within within(*this, i);
        if (!isTested)
            everyElement(field.parts[0], scope);
        else if (!value(field.parts[0], scope))
            return false;
    }
    return true;
}

// Tries each value of an untested field.
void ClassReader::everyElement(const Field& field, const Scope& scope)
{
    if (field.kind == Kind::kArray)
        array(field, scope, false);
    else if (field.kind != Kind::kRaw || *field.type != '\0')
        value(field, scope);
    else
    {
        // Bytes are read one by one.
        const int64_t size = field.says == Says::kMember ? valueAt(scope.m_Sizes, field.sizeOffset) : field.extent;
        take(std::clamp<int64_t>(size, 0, static_cast<int64_t>(left())));
    }
}

bool ClassReader::element(const Field& field, const Scope& scope)
{
    if (field.how.key == Key::kTravels)
    {
        const Within within(*this, ".key");
        if (!value(field.parts[0], scope) && field.how.reading == Decides::kAll)
            return false;
    }
    return value(field.parts.back(), scope);
}

bool ClassReader::list(const Field& field, const Scope& scope)
{
    const Decides reading = field.how.reading;
    int said = 0;
    if (field.says == Says::kCountBefore)
        said = valueAt(scope.m_Counts, field.offset);
    else if (!count("(count)", said) && reading != Decides::kNothing && reading != Decides::kAboveZero)
        return false;
    if (reading == Decides::kAboveZero && said < 1)
        return true;
    int64_t smallest = field.parts.back().smallest;
    if (field.how.key == Key::kTravels)
        smallest += field.parts[0].smallest;
    const auto bound = wire::boundedCount(said, static_cast<int64_t>(left()), smallest);
    bool isGood = true;
    for (int64_t i = 0; i < bound; ++i)
    {
        const Within within(*this, static_cast<int>(i));
        isGood = element(field, scope);
        if (!isGood && reading == Decides::kAll)
            return false;
    }
    return isGood || reading != Decides::kLastElement;
}

// No cell decides.
void ClassReader::table(const Field& field, const Scope& scope)
{
    const wire::Rows& rows = field.rows;
    if (field.says == Says::kType)
    {
        int ignored = 0;
        count("(ignored count)", ignored);
        for (const Field& column : field.parts)
        {
            const Within within(*this, column.name);
            everyElement(column, scope);
        }
        return;
    }
    int64_t cells = 0;
    int64_t across = 1;
    if (field.says == Says::kCountBefore)
    {
        cells = valueAt(scope.m_Counts, field.parts[0].offset);
    }
    else
    {
        int said = rows.across != 0 ? 0 : rows.rows;
        count("(rows)", said);
        cells = said;
        if (rows.across != 0)
        {
            int columns = 0;
            count("(columns)", columns);
            if (said <= 0 || columns <= 0)
                return;
            cells *= columns;
            across = columns;
        }
    }
    int64_t smallest = 0;
    for (const Field& column : field.parts)
    {
        const Field& line = column.parts.back();
        if (rows.across == 0)
            smallest += line.smallest;
        else if (line.extent >= rows.across)
            smallest += line.parts[0].smallest;
    }
    cells = wire::boundedCount(cells, static_cast<int64_t>(left()), smallest);
    for (int64_t i = 0; i < cells; ++i)
        for (const Field& column : field.parts)
        {
            const Field& line = column.parts.back();
            if (rows.across == 0)
                value(line, scope);
            else if (line.extent >= rows.across || i % across < line.extent)
                value(line.parts[0], scope);
        }
}

bool ClassReader::step(const Field& field, bool isIndex, Scope& scope)
{
    if (field.kind == Kind::kTable)
    {
        table(field, scope);
        return true;
    }
    const Within within(*this, field.name.empty() ? kVersion : std::string_view(field.name));
    if (field.kind == Kind::kCount)
    {
        int said = 0;
        if (!count("(count)", said))
            return false;
        scope.m_Counts[field.offset] = said;
        return true;
    }
    const size_t from = m_At;
    const bool isUntested = isIndex || (field.kind != Kind::kList && field.how.reading == Decides::kNothing);
    if (isUntested)
        everyElement(field, scope);
    else if (!value(field, scope))
        return false;
    if (field.most != 0 && m_At != from)
        scope.m_Sizes[field.offset] = static_cast<int>(m_Number);
    return true;
}

bool ClassReader::object(const wire::Schema& schema)
{
    Scope scope;
    bool isGood = true;
    const Field* before = nullptr;
    for (auto field = schema.fields.begin(); field != schema.fields.end(); ++field)
    {
        // The index after the version of a head is never tested.
        const bool isIndex = field->head && before && before->head && before->name.empty();
        before = &*field;
        if (!isGood && !hasWord(*field, "TriedAnyway"))
            continue;
        if (step(*field, isIndex, scope))
            continue;
        if (hasWord(*field, "EndsWellBeforeItsBytes") && field->kind != Kind::kPayload)
            return true;
        const auto passesOver = [&](const char* word)
        {
            if (!hasWord(*field, word))
                return false;
            while (field + 1 != schema.fields.end() && hasWord(*(field + 1), word))
                ++field;
            return true;
        };
        if (!passesOver("EitherWay") && !passesOver("SkippedOnFailure"))
            isGood = false;
    }
    return isGood;
}

ReadFailure ClassReader::failure() const
{
    ReadFailure failure;
    for (const Part& part : m_Failed.m_Path)
        if (part.m_Name.empty())
            failure.m_Field.append("[").append(std::to_string(part.m_Index)).append("]");
        else
            failure.m_Field.append(part.m_Name);
    failure.m_Element = elementOf(failure.m_Field);
    failure.m_Offset = m_Failed.m_Offset;
    failure.m_Needed = m_Failed.m_Needed;
    failure.m_Had = m_Failed.m_Had;
    if (!m_Failed.m_IsRefused)
        failure.m_What = "needed " + std::to_string(failure.m_Needed) + ", had " + std::to_string(failure.m_Had);
    else if (!m_Failed.m_Counted)
        failure.m_What = "version " + std::to_string(m_Failed.m_Number) + ", not " + std::to_string(m_Failed.m_Valid);
    else
        failure.m_What = tooMany(m_Failed.m_Number, m_Failed.m_Counted, m_Failed.m_Valid);
    return failure;
}

} // namespace

std::string tooMany(int64_t count, const char* what, int64_t most)
{
    return std::to_string(count) + " " + what + ", more than " + std::to_string(most);
}

int elementOf(const std::string& path)
{
    const size_t close = path.rfind(']');
    const size_t open = close == std::string::npos ? close : path.rfind('[', close);
    return open == std::string::npos ? -1 : std::stoi(path.substr(open + 1, close - open - 1));
}

ClassReading readAsClass(const wire::Schema& schema, std::string_view bytes, Limits limits)
{
    ClassReader reader(bytes, limits);
    ClassReading reading;
    reading.m_Read = reader.object(schema);
    reading.m_Consumed = reader.position();
    if (!reading.m_Read)
        reading.m_Failure = reader.failure();
    return reading;
}

} // namespace tools
