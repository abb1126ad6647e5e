// expect: CCmdOfNobody
#include "dispatch/command_ids.h"
#include "packaging/command_head.h"

#ifdef COMPILE_FAIL
class CCmdOfNobody : public CCmdPlatform
{
public:
    CCmdOfNobody() : CCmdPlatform(command_id::CCmdOfNobody) {}
};
#endif
