// Makes valid payloads of any class from its schema, by an encoder of its own.
#pragma once

#include "packaging/wire/schema.h"

#include <random>
#include <string>
#include <vector>

namespace test
{

// Where a payload holds a number that says how much follows.
struct CountPlace
{
    size_t m_Offset;
    std::string m_Field;
};

struct MadePayload
{
    std::string m_Bytes;
    std::vector<CountPlace> m_Counts;
};

// Values are random, lists have up to three elements, keyed maps up to one, so that a payload that was read is
// written again with the same bytes. Text is in the form of this build's width.
class PayloadMaker
{
public:
    explicit PayloadMaker(unsigned seed) : m_Random(seed) {}
    MadePayload make(const wire::Schema& schema);

private:
    std::mt19937 m_Random;
};

} // namespace test
