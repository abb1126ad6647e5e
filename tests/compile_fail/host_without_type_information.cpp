// expect: commonground asks the host's objects for their class
// flags: -fno-rtti
#include "framework/unknown.h"

class Listener : public virtual zet::Unknown
{
};

#ifdef COMPILE_FAIL
Listener g_Listener;
#endif
