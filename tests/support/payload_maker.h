// Makes valid payloads of any class from its schema, by an independent encoder.
#pragma once

#include "packaging/wire/schema.h"

#include <random>
#include <string>
#include <vector>

namespace test
{

// The position of a count or size in a payload.
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

// Values are random, lists have up to three elements, keyed maps up to one, so that reading and writing a payload gives
// the same bytes. Text has the form of this build's width.
class PayloadMaker
{
public:
    explicit PayloadMaker(unsigned seed) : m_Random(seed) {}
    MadePayload make(const wire::Schema& schema);

private:
    std::mt19937 m_Random;
};

} // namespace test
