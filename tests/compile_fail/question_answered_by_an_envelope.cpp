// expect: a pack envelope is not an answer: any message that the peer sends in it
#include "commands/registry.h"
#include "host/questions.h"
#include "packs/envelope.h"

bool expectAnswers(host::Questions& questions)
{
#ifdef COMPILE_FAIL
    return questions.expect<CCmdServerEchoReply, CCmdHomePackReply>();
#else
    return questions.expect<CCmdServerEchoReply>();
#endif
}
