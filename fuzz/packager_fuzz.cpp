// Value operations of both packagers on fuzzed bytes: the first bytes choose the operations, the rest is the payload.
#include "fuzz/support/budget.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

template <class P>
void readAll(const uint8_t* operations, size_t count, const uint8_t* payload, size_t size)
{
    P packager;
    if (!packager.Write(payload, static_cast<int>(size)))
        return;
    for (size_t i = 0; i < count; ++i)
    {
        const int before = packager.GetReadPointer();
        bool flag = false;
        unsigned short word = 0;
        unsigned long number = 0;
        float real = 0;
        zet::String_T<wchar_t> text;
        zet::Uuid id;
        zet::Buffer buffer;
        unsigned char raw[300];
        switch (operations[i] % 10)
        {
        case 0:
            packager.Read(flag);
            break;
        case 1:
            packager.Read(&word);
            break;
        case 2:
            packager.Read(number);
            break;
        case 3:
            packager.Read(&real);
            break;
        case 4:
            packager.Read15(&word);
            break;
        case 5:
            packager.Read30(&number);
            break;
        case 6:
            packager.Read(text);
            break;
        case 7:
            packager.Read(id);
            break;
        case 8:
            packager.Read(buffer);
            break;
        default:
            packager.Read(raw, operations[i]);
            break;
        }
        if (packager.GetReadPointer() < before || packager.GetReadPointer() > packager.GetDataSize())
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t kOperations = 16;
    if (size < kOperations)
        return 0;
    const fuzz::Budget budget(size);
    readAll<CCmdPackager>(data, kOperations, data + kOperations, size - kOperations);
    readAll<CDataPackager>(data, kOperations, data + kOperations, size - kOperations);
    return 0;
}
