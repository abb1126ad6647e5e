// expect: HomePack_Absent_Reply
#include "packs/envelope.h"
#include "packs/home.h"
#include "tools/class_row.h"

MESSAGE_ROW_HOLDS(CCmdHomePackReply, HomePack_SaveData_Reply)
#ifdef COMPILE_FAIL
MESSAGE_ROW_HOLDS(CCmdHomePackReply, HomePack_Absent_Reply)
#endif
