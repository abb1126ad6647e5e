// What a class puts on the wire, as data: for tools, for guarding counts, for reading bytes without the class.
#pragma once

#include "framework/platform/export.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace wire
{

struct Schema;

enum class Kind
{
    kBool,
    kChar,
    kByte,
    kShort,
    kWord,
    kInt,
    kLong, // 32 bits, unsigned
    kFloat,
    kText,
    kUuid,
    kNode,
    kBuffer,      // size and bytes
    kBytes,       // as many raw bytes as extent says
    kRecord,      // the fields of record
    kArray,       // extent times parts[0]
    kPair,        // parts in order
    kList,        // count, then that many parts[0]; of a map of values parts[0] is the key and parts[1] the value
    kCountOf,     // the count of the list of the same name
    kElementsOf,  // the elements of the list whose count came before
    kColumns,     // as many rows as the count of parts[0]'s list said, each row one element of each part
    kInterleaved, // counts (as many as literals), then for each cell one element of each part
    kLiteral,     // an int that no member keeps; extent is what a writer sends
    kVersion,     // the head's version word
    kPayload,     // size and bytes of a packager
    kSizedBytes,  // as many bytes as the int member at sizeOffset says
    kSizedItems   // as many parts[0] as the int member at sizeOffset says, which was sent earlier
};

// Walks the elements of a container: key (null in a sequence) and value of each.
using Visit = std::function<void(const void* key, const void* value)>;
using Walk = void (*)(const void* container, const Visit& visit);
// The bytes that a packager member holds, and how many.
using BytesOf = std::pair<const unsigned char*, int> (*)(const void* member);

struct Field
{
    // The member's expression within its class; empty for what no member keeps.
    std::string name;
    Kind kind = Kind::kInt;
    // The quirk words of the statement, parted by spaces.
    std::string words;
    // Where the member lies within the object, in bytes; of a part, within its element.
    size_t offset = 0;
    // Element size of an array, in bytes.
    size_t stride = 0;
    int extent = 0;
    size_t sizeOffset = 0;
    // The class of a record, or null.
    const Schema* record = nullptr;
    Walk walk = nullptr;
    // Of a payload only.
    BytesOf bytes = nullptr;
    std::vector<Field> parts;
    // The counts that a writer of interleaved tables sends.
    std::vector<int> literals;
    // Belongs to a head: shown first, wherever it stands on the wire.
    bool head = false;
};

struct Schema
{
    std::string name;
    std::vector<Field> fields;
    // Bytes of the smallest object that can be read to its end.
    int smallest = 0;
};

// Bytes of the smallest value of a field.
COMMONGROUND_API int smallestOf(const Field& field);
// The word for a kind, such as "int" or "text".
COMMONGROUND_API const char* kindName(Kind kind);

} // namespace wire
