// The one walk over a schema: gives an object's values in wire order, as JSON. A source provides the values: an
// object's memory, bytes, a generator of random payloads, or JSON.
//
// A source has kInMemory and these functions, each with the path of the value:
//   number(field, place, path), real(field, ...), text(field, ...), block(field, ...)   one value
//   raw(field, place, size, path)     raw bytes of the given size
//   count(list, path)                 the count of a list
//   literal(own, path)                the number that a table sends before its rows; own is the valid one
//   sized(field, said)                the used size of an array; said is what its member gives
// A place is an address, for a source in memory only. There a list has the elements that it holds, and counts are not
// asked for.
//
// A source with kHasPlaces chooses the places itself; 0 is a value that it does not have. It also has these functions,
// and its count() gets the list's place after the list:
//   enter(schema, place, path)            the place of an object whose fields follow
//   member(schema, object, field)         the place of a field
//   element(place, i)                     the place of an element of an array or a list, or of a part of a pair
//   holds(place, least, most, path)       checks the number of elements
#pragma once

#include "packaging/wire/schema.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tools
{

template <class Source>
class SchemaWalk
{
public:
    using Json = nlohmann::ordered_json;
    using Field = wire::Field;
    using Kind = wire::Kind;
    // An address, or 0 for other sources.
    using Place = uintptr_t;

    // Whether the source chooses the places.
    static constexpr bool kHasPlaces = requires { Source::kHasPlaces; };

    explicit SchemaWalk(Source& source) : m_Source(source) {}

    // The fields of an object; those of a head are first.
    Json object(const wire::Schema& schema, Place at, const std::string& path)
    {
        if constexpr (kHasPlaces)
            at = m_Source.enter(schema, at, path);
        Scope scope{schema, at, {}, {}};
        Json head;
        Json body = Json::object();
        for (const Field& field : schema.fields)
            member(field, path, scope, field.head ? head : body);
        if (head.is_null())
            return body;
        for (auto& item : body.items())
            head[item.key()] = std::move(item.value());
        return head;
    }

private:
    // An object, and the values that its later fields need of earlier ones, by the offset of the member.
    struct Scope
    {
        const wire::Schema& m_Schema;
        Place m_At;
        std::map<size_t, int> m_Sizes;
        std::map<size_t, int> m_Counts;

        int countAt(size_t offset) const
        {
            const auto count = m_Counts.find(offset);
            return count == m_Counts.end() ? 0 : count->second;
        }
    };

    void member(const Field& field, const std::string& path, Scope& scope, Json& json)
    {
        if (field.kind == Kind::kTable)
            return table(field, path, scope, json);
        if (Source::kInMemory && (field.name.empty() || field.kind == Kind::kCount))
            return;
        // A value without a member is named by its type.
        const std::string name = field.name.empty() ? joined(path, "(") + field.type + ")" : joined(path, field.name);
        if (field.kind == Kind::kCount)
        {
            scope.m_Counts[field.offset] =
                countOf(laterOf(scope.m_Schema, field), memberAt(scope, field), joined(name, "(count)"));
            return;
        }
        Json value = valueOf(field, memberAt(scope, field), name, scope);
        if (field.most != 0)
            scope.m_Sizes[field.offset] = value.template get<int>();
        if (!field.name.empty())
            json[field.name] = std::move(value);
    }

    Json valueOf(const Field& field, Place at, const std::string& path, const Scope& scope)
    {
        switch (field.kind)
        {
        case Kind::kNumber:
            return m_Source.number(field, at, path);
        case Kind::kFloat:
            return m_Source.real(field, at, path);
        case Kind::kText:
            return m_Source.text(field, at, path);
        case Kind::kRaw:
            return m_Source.raw(field, at, howMany(field, scope), path);
        case Kind::kBuffer:
        case Kind::kPayload:
            return m_Source.block(field, at, path);
        case Kind::kRecord:
            return object(*field.record, at, joined(path, "."));
        case Kind::kArray:
            return arrayOf(field.parts[0], at, field.stride, howMany(field, scope), path, scope);
        case Kind::kPair:
            return pairOf(field, at, path, scope);
        case Kind::kList:
            return listOf(field, at, path, scope);
        case Kind::kCount:
        case Kind::kTable:
            break;
        }
        return nullptr;
    }

    Json pairOf(const Field& field, Place at, const std::string& path, const Scope& scope)
    {
        check(at, 2, 2, path);
        Json first = valueOf(field.parts[0], elementAt(at, 0, field.parts[0].offset), joined(path, ".first"), scope);
        Json second = valueOf(field.parts[1], elementAt(at, 1, field.parts[1].offset), joined(path, ".second"), scope);
        return Json::array({std::move(first), std::move(second)});
    }

    Json arrayOf(const Field& element, Place at, size_t stride, int count, const std::string& path, const Scope& scope)
    {
        check(at, count, count, path);
        Json array = Json::array();
        for (int i = 0; i < count; ++i)
            array.push_back(
                valueOf(element, elementAt(at, i, static_cast<size_t>(i) * stride), indexed(path, i), scope));
        return array;
    }

    Json listOf(const Field& field, Place at, const std::string& path, const Scope& scope)
    {
        Json array = Json::array();
        const auto add = [&](Place key, Place value, const std::string& place)
        {
            const bool hasKey = field.parts.size() == 2;
            Json keyJson;
            if (hasKey && (Source::kInMemory || field.how.key == wire::Key::kTravels))
                keyJson = valueOf(field.parts[0], key, joined(place, ".key"), scope);
            else if (hasKey)
                keyJson = array.size();
            Json json = valueOf(field.parts.back(), value, place, scope);
            array.push_back(hasKey ? Json::array({std::move(keyJson), std::move(json)}) : std::move(json));
        };
        if constexpr (Source::kInMemory)
        {
            field.walk(reinterpret_cast<const void*>(at), [&](const void* key, const void* value)
                       { add(reinterpret_cast<Place>(key), reinterpret_cast<Place>(value), path); });
        }
        else
        {
            const int count = field.says == wire::Says::kCount ? countOf(field, at, joined(path, "(count)"))
                                                               : scope.countAt(field.offset);
            for (int i = 0; i < count; ++i)
            {
                const std::string place = indexed(path, i);
                const Place element = elementAt(at, i, 0);
                const bool isPair = kHasPlaces && field.parts.size() == 2;
                if (isPair)
                    check(element, 2, 2, place);
                add(isPair ? elementAt(element, 0, 0) : 0, isPair ? elementAt(element, 1, 0) : element, place);
            }
        }
        return array;
    }

    void table(const Field& field, const std::string& path, const Scope& scope, Json& json)
    {
        const wire::Rows& said = field.rows;
        if (!Source::kInMemory && field.says == wire::Says::kType)
            m_Source.literal(said.rows, joined(path, "(ignored count)"));
        if (Source::kInMemory || field.says == wire::Says::kType)
        {
            for (const Field& column : field.parts)
                json[column.name] = valueOf(column, memberAt(scope, column), joined(path, column.name), scope);
            return;
        }
        const int rows = field.says == wire::Says::kCountBefore ? scope.countAt(field.parts[0].offset)
                                                                : m_Source.literal(said.rows, joined(path, "(rows)"));
        const int across = said.across != 0 ? m_Source.literal(said.across, joined(path, "(columns)")) : 1;
        for (const Field& column : field.parts)
        {
            json[column.name] = Json::array();
            const bool isArray = column.kind == Kind::kArray;
            check(memberAt(scope, column), isArray ? rows : 0, rows, joined(path, column.name));
        }
        for (int row = 0; row < rows; ++row)
            for (int at = 0; at < across; ++at)
                for (const Field& column : field.parts)
                    cell(column, row, said.across != 0 ? at : -1, said.across, path, scope, json[column.name]);
    }
    // A cell of a table of tables, or, without a place across, of a table. Those beyond an array are read and dropped.
    void cell(const Field& column, int row, int across, int widest, const std::string& path, const Scope& scope,
              Json& json)
    {
        const Field& line = column.parts[0];
        const bool isKept = column.kind == Kind::kList || row < column.extent;
        const std::string place = indexed(joined(path, column.name), row);
        const Place rowAt = elementAt(memberAt(scope, column), row, 0);
        if (across < 0)
        {
            Json value = valueOf(line, rowAt, place, scope);
            if (isKept)
                json.push_back(std::move(value));
            return;
        }
        if (across == 0)
            check(rowAt, line.extent, line.extent, place);
        if (isKept && across == 0)
            json.push_back(Json::array());
        if (line.extent < widest && across >= line.extent)
            return;
        Json value = valueOf(line.parts[0], elementAt(rowAt, across, 0), indexed(place, across), scope);
        if (isKept && across < line.extent)
            json.back().push_back(std::move(value));
    }

    // In memory a member and an element are offset bytes after the start of what holds them.
    Place memberAt(const Scope& scope, const Field& field)
    {
        if constexpr (kHasPlaces)
            return m_Source.member(scope.m_Schema, scope.m_At, field);
        else
            return scope.m_At + field.offset;
    }
    Place elementAt(Place at, [[maybe_unused]] int i, [[maybe_unused]] size_t offset)
    {
        if constexpr (kHasPlaces)
            return m_Source.element(at, i);
        else
            return at + offset;
    }
    void check([[maybe_unused]] Place at, [[maybe_unused]] int least, [[maybe_unused]] int most,
               [[maybe_unused]] const std::string& path)
    {
        if constexpr (kHasPlaces)
            m_Source.holds(at, least, most, path);
    }
    int countOf(const Field& list, [[maybe_unused]] Place at, const std::string& path)
    {
        if constexpr (kHasPlaces)
            return m_Source.count(list, at, path);
        else
            return m_Source.count(list, path);
    }

    int howMany(const Field& field, const Scope& scope)
    {
        if (field.says != wire::Says::kMember)
            return field.extent;
        const auto said = scope.m_Sizes.find(field.sizeOffset);
        return m_Source.sized(field, said == scope.m_Sizes.end() ? 0 : said->second);
    }
    // The list whose elements follow later; for a table, the count itself.
    static const Field& laterOf(const wire::Schema& schema, const Field& count)
    {
        for (const Field& field : schema.fields)
            if (field.kind == Kind::kList && field.offset == count.offset)
                return field;
        return count;
    }

    // A source in memory does not use paths, so none are built for it.
    static std::string joined(const std::string& path, std::string_view more)
    {
        return Source::kInMemory ? std::string() : std::string(path).append(more);
    }
    static std::string indexed(const std::string& path, int i)
    {
        return Source::kInMemory ? std::string() : path + "[" + std::to_string(i) + "]";
    }

    Source& m_Source;
};

} // namespace tools
