// Is called for each command of an analyser and of the sockets that use it, to count them.
#pragma once

#include "framework/export.h"

// Called on the threads that dispatch and send, several at a time if they share the analyser. It must not throw.
class COMMONGROUND_API CommandObserver
{
public:
    enum Outcome
    {
        kHandled,
        // The class could not read the payload, or bytes were left over.
        kRefused,
        // No handler was installed for the id.
        kUnknown,
        // The handler or a fallback threw.
        kThrown
    };

    virtual ~CommandObserver();
    // A received command was dispatched. size: bytes of its payload; nanoseconds: the time that this took.
    virtual void onReceived(unsigned short id, int size, Outcome outcome, unsigned long long nanoseconds) = 0;
    // A command is about to be sent, or was just queued. size: bytes of its payload.
    virtual void onSent(unsigned short id, int size) = 0;
};
