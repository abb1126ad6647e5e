// Both frame forms on fuzzed bytes, from a stream and from memory; a received frame is sent again as the same bytes.
#include "framework/memory_stream.h"
#include "fuzz/support/budget.h"
#include "packaging/cmd_packager.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const fuzz::Budget budget(size);
    {
        const auto store = zet::MemoryStream::createInstance();
        store->write(data, static_cast<int>(size));
        zet::InputStream in(store.get());
        CCmdPackager frame;
        CCmdPackager fromMemory;
        const bool isReceived = frame.Receive(in);
        if (fromMemory.Receive(data, static_cast<int>(size)) != isReceived ||
            fromMemory.GetDataSize() != frame.GetDataSize() || fromMemory.GetCmdID() != frame.GetCmdID())
            std::abort();
        if (isReceived)
        {
            if (std::memcmp(fromMemory.GetBuffer(), frame.GetBuffer(), static_cast<size_t>(frame.GetDataSize())) != 0)
                std::abort();
            const size_t taken = size - static_cast<size_t>(in.available());
            const auto again = zet::MemoryStream::createInstance();
            zet::OutputStream out(again.get());
            if (!frame.Send(out))
                std::abort();
            // An all-zero address in the input is omitted when the frame is sent again.
            const unsigned char* const bytes = again->view(again->getSize());
            if (static_cast<size_t>(again->getSize()) == taken && std::memcmp(bytes, data, taken) != 0)
                std::abort();
            if (static_cast<size_t>(again->getSize()) > taken)
                std::abort();
            int placed = 0;
            const unsigned char* const place = frame.FrameInPlace(placed);
            if (placed != again->getSize() || std::memcmp(place, bytes, static_cast<size_t>(placed)) != 0)
                std::abort();
        }
    }
    CCmdPackager frame;
    const int taken = frame.Unpack(data, static_cast<int>(size));
    if (taken < 0 || static_cast<size_t>(taken) > size + 32)
        std::abort();
    return 0;
}
