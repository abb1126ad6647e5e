// Prints the golden vectors as lines of JSON, with all their bytes, for programs in any language:
// golden_vectors FOLDER
#include "tests/support/golden.h"
#include "tools/object_json.h"

#include <cstdio>
#include <exception>

namespace
{

using golden::Book;
using golden::Vector;
using golden::Width;
using nlohmann::ordered_json;

std::string hexOf(const std::string& bytes)
{
    return tools::hexOf(bytes.data(), bytes.size());
}

// What Write gives on a host with that width of text; null if the vector does not say.
ordered_json rewriteOf(const Book& book, const Vector& vector, Width width)
{
    if (vector.m_Rewrite == "-" || !(width == Width::k16 ? vector.m_Has16 : vector.m_Has32))
        return nullptr;
    const Vector& rewrite =
        vector.m_Rewrite.empty() ? vector : book.find(vector.m_Class, vector.m_Form, vector.m_Rewrite);
    return hexOf(book.bytes(rewrite, width));
}

void print(const Book& book, const Vector& vector, Width width)
{
    const std::string bytes = book.bytes(vector, width);
    const ordered_json line = {
        {"class", vector.m_Class},
        {"form", vector.m_Form},
        {"name", vector.m_Name},
        {"width", 8 * static_cast<int>(width)},
        {"bytes", hexOf(bytes)},
        {"read", vector.m_Read},
        {"consumed", vector.m_Consumed >= 0 ? vector.m_Consumed : static_cast<int>(bytes.size())},
        {"fields", book.members(vector)},
        {"rewrite16", rewriteOf(book, vector, Width::k16)},
        {"rewrite32", rewriteOf(book, vector, Width::k32)},
    };
    std::puts(line.dump().c_str());
}

} // namespace

int main(int count, char** words)
{
    if (count != 2)
    {
        std::fputs("usage: golden_vectors FOLDER\n", stderr);
        return 2;
    }
    try
    {
        const Book book(words[1]);
        for (const Vector& vector : book.all())
        {
            // Parts of other vectors.
            if (vector.m_Name == "head")
                continue;
            if (vector.m_Has16)
                print(book, vector, Width::k16);
            if (vector.m_Has32)
                print(book, vector, Width::k32);
        }
        return 0;
    }
    catch (const std::exception& fault)
    {
        std::fprintf(stderr, "golden_vectors: %s\n", fault.what());
        return 1;
    }
}
