// expect: the row of HomePack_SaveData_Reply names CCmdSportPackReply, which is not an envelope that carries it
#include "packs/envelope.h"
#include "packs/home.h"
#include "tools/class_row.h"

// The sport envelope carries messages of the data packager.
#ifdef COMPILE_FAIL
MESSAGE_ROW_HOLDS(CCmdSportPackReply, HomePack_SaveData_Reply)
#else
MESSAGE_ROW_HOLDS(CCmdHomePackReply, HomePack_SaveData_Reply)
#endif
