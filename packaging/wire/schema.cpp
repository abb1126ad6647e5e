#include "packaging/wire/schema.h"

namespace wire
{

namespace
{

int sumOf(const std::vector<Field>& fields)
{
    int sum = 0;
    for (const Field& field : fields)
        sum += smallestOf(field);
    return sum;
}

} // namespace

int smallestOf(const Field& field)
{
    switch (field.kind)
    {
    case Kind::kBool:
    case Kind::kChar:
    case Kind::kByte:
    case Kind::kFloat:
    case Kind::kText:
        return 1;
    case Kind::kShort:
    case Kind::kWord:
    case Kind::kVersion:
        return 2;
    case Kind::kInt:
    case Kind::kLong:
    case Kind::kBuffer:
    case Kind::kList:
    case Kind::kCountOf:
    case Kind::kLiteral:
    case Kind::kPayload:
        return 4;
    case Kind::kUuid:
        return 16;
    case Kind::kNode:
        return 6;
    case Kind::kBytes:
        return field.extent;
    case Kind::kRecord:
        return field.record->smallest;
    case Kind::kArray:
        return field.extent * smallestOf(field.parts[0]);
    case Kind::kPair:
        return sumOf(field.parts);
    case Kind::kInterleaved:
        return 4 * static_cast<int>(field.literals.size());
    case Kind::kElementsOf:
    case Kind::kColumns:
    case Kind::kSizedBytes:
    case Kind::kSizedItems:
        return 0;
    }
    return 0;
}

const char* kindName(Kind kind)
{
    switch (kind)
    {
    case Kind::kBool:
        return "bool";
    case Kind::kChar:
        return "char";
    case Kind::kByte:
        return "unsigned char";
    case Kind::kShort:
        return "short";
    case Kind::kWord:
        return "unsigned short";
    case Kind::kInt:
        return "int";
    case Kind::kLong:
        return "unsigned long";
    case Kind::kFloat:
        return "float";
    case Kind::kText:
        return "text";
    case Kind::kUuid:
        return "uuid";
    case Kind::kNode:
        return "node";
    case Kind::kBuffer:
        return "buffer";
    case Kind::kBytes:
        return "bytes";
    case Kind::kRecord:
        return "record";
    case Kind::kArray:
        return "array";
    case Kind::kPair:
        return "pair";
    case Kind::kList:
        return "list";
    case Kind::kCountOf:
        return "count";
    case Kind::kElementsOf:
        return "elements";
    case Kind::kColumns:
        return "columns";
    case Kind::kInterleaved:
        return "interleaved";
    case Kind::kLiteral:
        return "literal";
    case Kind::kVersion:
        return "version";
    case Kind::kPayload:
        return "payload";
    case Kind::kSizedBytes:
        return "sized bytes";
    case Kind::kSizedItems:
        return "sized items";
    }
    return "";
}

} // namespace wire
