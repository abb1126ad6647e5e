// expect: the message is read into the elements that its lists have
#include "host/pack_router.h"

bool installHandler(host::PackRouter<CCmdMatchPackRequest, CCmdMatchPackReply>& match)
{
    const auto handler = [](CCommandSocket&, Match4Pack_CheckHstryRec_Reply&) {};
#ifdef COMPILE_FAIL
    return match.on<Match4Pack_CheckHstryRec_Reply>(1, handler);
#else
    return match.on<Match4Pack_CheckHstryRec_Reply>(
        1, handler, [](Match4Pack_CheckHstryRec_Reply& reply) { reply.m_History1.resize(10); });
#endif
}
