// What a class puts on the wire, as data: for tools, for guarding counts, for reading bytes without the class.
#pragma once

#include "framework/export.h"
#include "packaging/wire/quirks.h"

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
    kNumber, // an integer or a bool, of size bytes
    kFloat,
    kText,
    kRaw,     // extent bytes
    kBuffer,  // size and bytes
    kPayload, // size and bytes of what a packager holds
    kRecord,  // the fields of record
    kArray,   // extent times parts[0]
    kPair,    // parts in order
    kList,    // that many parts[0]; of a map of values parts[0] is the key and parts[1] the value
    kCount,   // the count of a list whose elements, or of a table whose rows, are sent later
    kTable    // rows of one cell of each part
};

// Gets the key (null in a sequence) and the value of each element of a container.
using Visit = std::function<void(const void* key, const void* value)>;

struct Field
{
    // The member's expression within its class; empty for what no member keeps.
    std::string name;
    Kind kind = Kind::kNumber;
    // Of a number: its bytes on the wire, and in memory from the member's first byte on.
    int size = 0;
    bool isBool = false;
    bool isSigned = false;
    // What people call its type, where no part and no record does.
    const char* type = "";
    // Of a list all departures; of other fields what decides.
    Departures how;
    // The names of any other departures: of the steps that it is part of, or of what its class does by hand.
    std::vector<const char*> words;
    // Of a list, an array, raw bytes and a table.
    Says says = Says::kType;
    // Where the member is within the object, in bytes; of a part, within its element.
    size_t offset = 0;
    // Element size of an array, in bytes.
    size_t stride = 0;
    // How many of an array or of raw bytes, or the most, where a member says how many; of a payload, the most bytes. Of
    // a number that no member keeps, what a writer sends.
    int extent = 0;
    // Of a map whose key is a member of its elements: where it is within an element, in bytes.
    size_t keyOffset = 0;
    // The int that says how many, and in that field itself, the most that it may say.
    size_t sizeOffset = 0;
    int most = 0;
    // What the writer of a table sends before it, where it sends anything.
    Rows rows{};
    // Bytes of the smallest value.
    int smallest = 0;
    // The class of a record, or null.
    const Schema* record = nullptr;
    // Walks the elements of a container.
    void (*walk)(const void* container, const Visit& visit) = nullptr;
    // The bytes that a buffer or a packager holds.
    std::pair<const unsigned char*, int> (*bytes)(const void* member) = nullptr;
    std::vector<Field> parts;
    // Belongs to a head: shown first, wherever it is on the wire.
    bool head = false;
};

struct Schema
{
    std::string name;
    std::vector<Field> fields;
    // The members that the order marks as not sent.
    std::vector<std::string> notSent;
    // Bytes of the smallest object that can be read to its end.
    int smallest = 0;
};

// The words of a field's departures, separated by spaces, for people.
COMMONGROUND_API std::string wordsOf(const Field& field);

} // namespace wire
