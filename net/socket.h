// The base of all sockets: a task that may hold a handle.
#pragma once

#include "framework/string.h"
#include "framework/system.h"

struct hostent;

namespace zet
{

// A handle is the operating system's number of a socket. THREADS: only the thread of the System it is started in, or,
// in no System, the thread that uses it.
class COMMONGROUND_API Socket : public System::Task
{
public:
    static constexpr unsigned int kNoHandle = 0xFFFFFFFF;

    // True if no handle is held.
    bool isInvalid() const { return m_Handle == kNoHandle; }
    // The handle, which the socket keeps; kNoHandle if none is held.
    unsigned int getHandle() const { return m_Handle; }

    // Takes over a handle. False, and the caller keeps it, if it is kNoHandle or if another handle is held.
    virtual bool attach(unsigned int handle);
    // Returns the handle, still open, to the caller, which owns it from then on; kNoHandle if none is held.
    virtual unsigned int detach();
    // Ends what the handle was used for and closes it. This base class only forgets the handle.
    virtual void close();

    // The name of this machine; empty if the system does not report it.
    static String_T<wchar_t> getHostName();
    // The IPv4 addresses of a host name; null if the name is null or empty or is not found. Blocks until the resolver
    // answers. The resolver owns the result, which the next call, on any thread, may overwrite.
    static hostent* gethostbyname(const char* name);
    // The address written as four numbers with dots, in network order; 0xFFFFFFFF if the text is null or is not a valid
    // address.
    static unsigned int inet_addr(const char* text);

protected:
    unsigned int m_Handle = kNoHandle;
    // Of a connection: the number of the thread that owns it. Here, since it fills a gap: each connection is 8 bytes
    // smaller.
    unsigned int m_RunThreadId = 0;
};

} // namespace zet
