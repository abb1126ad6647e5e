// Whole frames into an analyser that serves every command; for a shared id both classes in turn.
#include "dispatch/analyser.h"
#include "framework/memory_stream.h"
#include "fuzz/support/budget.h"
#include "packaging/command_head.h"
#include "tools/class_table.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace
{

// Writes the received command: it must be possible to send what Read has stored.
void onCommand(CCmdHead* command, unsigned long, unsigned long)
{
    CCmdPackager again;
    command->Write(&again);
}

// One analyser for the first classes of all ids, one for the second classes of the shared ids.
const CCmdAnalyser& analyser(bool second)
{
    static const auto both = []
    {
        auto pair = std::make_unique<CCmdAnalyser[]>(2);
        unsigned short last = 0;
        for (const tools::ClassInfo& info : tools::classTable())
        {
            if (info.m_Family != tools::Family::kCommand)
                continue;
            pair[info.m_Id == last ? 1 : 0].Install(info.m_Id, info.m_Process, onCommand);
            last = info.m_Id;
        }
        return pair;
    }();
    return both[second ? 1 : 0];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const CCmdAnalyser& first = analyser(false);
    const CCmdAnalyser& second = analyser(true);
    const fuzz::Budget budget(size);
    const auto store = zet::MemoryStream::createInstance();
    store->write(data, static_cast<int>(size));
    zet::InputStream in(store.get());
    CCmdPackager frame;
    while (in.available() > 0 && frame.Receive(in))
    {
        first.Analyse(frame, 0, 0);
        frame.Reset();
        second.Analyse(frame, 0, 0);
    }
    return 0;
}
