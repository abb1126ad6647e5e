// expect: no envelope of this router carries the message
#include "host/pack_router.h"

bool installHandler(host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply>& home)
{
#ifdef COMPILE_FAIL
    return home.on<Match4Pack_FindMate_Request>(1, [](CCommandSocket&, Match4Pack_FindMate_Request&) {});
#else
    return home.on<HomePack_LoadData_Request>(1, [](CCommandSocket&, HomePack_LoadData_Request&) {});
#endif
}
