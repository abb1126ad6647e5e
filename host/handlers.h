// Typed handlers: a callable per command class, installed with the id and the process function of that class.
//
//   static CCmdAnalyserSocket analyser;
//   host::Handlers handlers(analyser);
//   handlers.on<CCmdServerEcho>([&](CCommandSocket& socket, CCmdServerEcho& echo) { ... });
#pragma once

#include "dispatch/analyser_socket.h"
#include "dispatch/command_process.h"
#include "framework/export.h"
#include "packaging/command_head.h"
#include "transport/command_socket.h"

#include <memory>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace host
{

namespace inner
{

// Owns the callable of an installed handler, whose type only its process function knows. The analyser keeps the number
// and the generation of a table row instead of a pointer, since its two words do not hold a pointer on every system.
using OwnedHandler = std::unique_ptr<void, void (*)(void*)>;

// Null if the Handlers that owned it is gone.
COMMONGROUND_API void* findHandler(unsigned long row, unsigned long generation);
// Log one line with the name of the class, within the peer's share. Always false. isRead: the result of the class's
// Read; if it is true, the command has bytes left over.
COMMONGROUND_API bool refuseCommand(const CCmdHead& command, const std::type_info& type, const CCmdPackager& pk,
                                    bool isRead, CCommandSocket& socket);
COMMONGROUND_API bool reportNoHandlers(const std::type_info& type, const CCmdPackager& pk, CCommandSocket& socket);

// The process function that is installed for Command. Like the generated one, but it calls the handler with its types.
template <class Command, class Handler>
bool processCommand(CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler, unsigned long row,
                    unsigned long generation)
{
    auto* const handler = static_cast<Handler*>(findHandler(row, generation));
    if (!handler)
        return reportNoHandlers(typeid(Command), *pk, *socket);
    Command command;
    const bool isRead = command.Read(pk);
    if (!isRead || pk->GetReadPointer() != pk->GetDataSize())
        return refuseCommand(command, typeid(Command), *pk, isRead, *socket);
    if (kTraceCommands)
        TraceReceivedCommand(command, socket);
    (*handler)(*socket, command);
    return true;
}

} // namespace inner

// The handlers of one analyser. They are installed at start, like those of CCmdAnalyserSocket::Install; from then on
// threads may share the analyser, and a handler is called on the thread of its socket. The dispatch allocates nothing.
//
// A command that its class cannot read, or that has bytes left over, is logged with the name of the class and refused;
// the analyser then calls its error fallback or logs its own line.
//
// LIFETIME: the analyser and the Handlers may be destroyed in either order. After the Handlers, its commands are
// refused and logged. It must not be destroyed while one of its handlers runs, on this or another thread.
class COMMONGROUND_API Handlers
{
public:
    // The analyser is not owned. It is used by on() only.
    explicit Handlers(CCmdAnalyserSocket& analyser);
    ~Handlers();
    Handlers(const Handlers&) = delete;
    Handlers& operator=(const Handlers&) = delete;

    // Installs a callable for a command class. It takes (CCommandSocket&, Command&) and may have captures, which must
    // live as long as this object. The command lives only during the call. False, and logged, if this object has a
    // handler for the id already: for this class, or for the other class of a shared id. An exception from a handler
    // is caught and logged by the analyser.
    template <class Command, class Handler>
    bool on(Handler handler)
    {
        static_assert(std::is_base_of_v<CCmdHead, Command>, "on<Command>() takes the class of a command");
        static_assert(std::is_invocable_v<Handler&, CCommandSocket&, Command&>,
                      "the handler of on<Command>() takes (CCommandSocket&, Command&)");
        if constexpr (std::is_base_of_v<CCmdHead, Command> && std::is_invocable_v<Handler&, CCommandSocket&, Command&>)
        {
            inner::OwnedHandler owned(new Handler(std::move(handler)),
                                      [](void* handler) { delete static_cast<Handler*>(handler); });
            return install(Command().GetID(), typeid(Command), &inner::processCommand<Command, Handler>,
                           std::move(owned));
        }
        else
            return false;
    }

    // Whether on<Command>() would accept the id. If not, logs the reason as on() does.
    template <class Command>
    bool canInstall() const
    {
        static_assert(std::is_base_of_v<CCmdHead, Command>, "canInstall<Command>() takes the class of a command");
        return canInstall(Command().GetID(), typeid(Command));
    }

    // The number of commands that have a handler here.
    int getCount() const { return static_cast<int>(m_Installed.size()); }

private:
    struct Installed
    {
        unsigned short m_Id;
        const std::type_info* m_Type;
        unsigned long m_Row;
        inner::OwnedHandler m_Handler;
    };

    bool canInstall(unsigned short id, const std::type_info& type) const;
    bool install(unsigned short id, const std::type_info& type, SocketCmdProcess process, inner::OwnedHandler handler);

    CCmdAnalyserSocket& m_Analyser;
    std::vector<Installed> m_Installed;
};

} // namespace host
