// Every record and feature message on fuzzed bytes: the first two choose the class, the third the packager.
#include "fuzz/support/budget.h"
#include "tools/class_table.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

template <class P>
void readAndWrite(const tools::ClassInfo& info, const uint8_t* data, size_t size, bool (*read)(void*, P&),
                  bool (*write)(const void*, P&))
{
    if (!read)
        return;
    P packager;
    if (!packager.Write(data, static_cast<int>(size)))
        return;
    const std::shared_ptr<void> object = info.make();
    read(object.get(), packager);
    if (packager.GetReadPointer() > packager.GetDataSize())
        std::abort();
    P again;
    write(object.get(), again);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t kChoice = 3;
    if (size < kChoice)
        return 0;
    const auto& table = tools::classTable();
    const tools::ClassInfo& info = table[(data[0] | static_cast<size_t>(data[1]) << 8) % table.size()];
    // Memory of the object itself does not depend on the payload.
    const fuzz::Budget budget(size);
    if (data[2] & 1)
        readAndWrite(info, data + kChoice, size - kChoice, info.m_ReadCmd, info.m_WriteCmd);
    else
        readAndWrite(info, data + kChoice, size - kChoice, info.m_ReadData, info.m_WriteData);
    return 0;
}
