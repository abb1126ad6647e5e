// expect: an answer is named once
#include "commands/registry.h"
#include "host/questions.h"

bool expectAnswers(host::Questions& questions)
{
#ifdef COMPILE_FAIL
    return questions.expect<CCmdServerEchoReply, CCmdServerEchoReply>();
#else
    return questions.expect<CCmdServerEchoReply, CCmdServerHelloReply>();
#endif
}
