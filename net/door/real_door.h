// The operating system's network as a Door. Each platform implements it in a file of its own.
#pragma once

#include "net/door/door.h"

namespace zet::inner
{

class RealDoor final : public Door
{
public:
    Handle open(Kind kind, Family family, Fault& fault) override;
    void close(Handle handle) override;
    Fault unblock(Handle handle) override;
    Fault bind(Handle handle, const Endpoint& own) override;
    Fault listen(Handle handle, int backlog) override;
    Handle accept(Handle listener, Endpoint& peer, Fault& fault) override;
    Fault connect(Handle handle, const Endpoint& peer) override;
    Fault endConnect(Handle handle) override;
    size_t receive(Handle handle, void* data, size_t size, Fault& fault) override;
    size_t send(Handle handle, const Piece* pieces, int count, Fault& fault) override;
    int receiveBatch(Handle handle, Datagram* datagrams, int count, Fault& fault) override;
    int sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault) override;
#ifndef _WIN32
    bool canSegment(Handle handle) override;
    int sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault) override;
#endif
    bool getOwnEndpoint(Handle handle, Endpoint& own) override;
    bool getPeerEndpoint(Handle handle, Endpoint& peer) override;
    void setOption(Handle handle, Option option, int value) override;
    void watchPeer(Handle handle, const NetLimits& limits) override;
#ifdef __linux__
    bool prepareListener(Handle listener, const NetLimits& limits) override;
    bool canSharePorts() const override
    {
        return true;
    }
#endif
    std::unique_ptr<Poller> makePoller() override;
    void resolve(const char* name, Answer answer, const Asker& asker) override;
};

} // namespace zet::inner
