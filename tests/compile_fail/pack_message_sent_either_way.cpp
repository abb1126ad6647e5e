// expect: several envelopes carry the message: name one
#include "host/pack_router.h"

using Profiling = host::PackRouter<CCmdProfilingPackRequest, CCmdProfilingPackReply>;

bool sendMessage(const Profiling& profiling, CCommandSocket& socket)
{
#ifdef COMPILE_FAIL
    return profiling.send(socket, CmdProfilingPack_GetMaxValues());
#else
    return profiling.send<CCmdProfilingPackReply>(socket, CmdProfilingPack_GetMaxValues());
#endif
}
