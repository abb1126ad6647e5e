// Makes valid payloads of any class from its schema, by an independent encoder.
#pragma once

#include "packaging/wire/schema.h"

#include <map>
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
    void object(const wire::Schema& schema);
    void value(const wire::Field& field);
    void elements(const wire::Field& field, int count);
    void number(int size, unsigned bits);
    void count(int value, const std::string& name);
    void text();
    int upTo(int most) { return static_cast<int>(m_Random() % static_cast<unsigned>(most + 1)); }

    std::mt19937 m_Random;
    MadePayload m_Made;
};

} // namespace test
