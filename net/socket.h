// The base of all sockets: a task that may hold a handle of the operating system.
#pragma once

#include "framework/string.h"
#include "framework/system.h"

struct hostent;

namespace zet
{

// Belongs to one thread, that of the System it is started in. A handle is the operating system's number of a socket.
class COMMONGROUND_API Socket : public System::Task
{
public:
    static constexpr unsigned int kNoHandle = 0xFFFFFFFF;

    // True when no handle is held.
    bool isInvalid() const { return m_Handle == kNoHandle; }
    unsigned int getHandle() const { return m_Handle; }

    // Takes a handle over; false for none, and where another one is held already.
    virtual bool attach(unsigned int handle);
    // Gives the handle back, open, to the caller; kNoHandle where none is held.
    virtual unsigned int detach();
    virtual void close();

    // The name of this machine; empty when the system does not tell.
    static String_T<wchar_t> getHostName();
    // The resolver's answer, or null. It waits for the resolver and is overwritten by the next call.
    static hostent* gethostbyname(const char* name);
    // An address of four numbers with points, in network order; 0xFFFFFFFF for what is none.
    static unsigned int inet_addr(const char* text);

protected:
    unsigned int m_Handle = kNoHandle;
};

} // namespace zet
