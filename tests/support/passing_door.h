// A door that passes each call on to the real one and counts it. Names get their answer when the test gives it, and the
// machine may be one without IPv6.
#pragma once

#include "net/door/door.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace test
{

using zet::inner::Door;
using zet::inner::Endpoint;

class PassingDoor : public Door
{
public:
    Handle open(Kind kind, Family family, Fault& fault) override
    {
        Door& next = noted("open");
        if (m_HasIPv6 || family == kIPv4)
            return next.open(kind, family, fault);
        fault = {Fault::kNoAddress, 1};
        return kNoHandle;
    }
    void close(Handle handle) override { noted("close").close(handle); }
    Fault unblock(Handle handle) override { return noted("unblock").unblock(handle); }
    Fault bind(Handle handle, const Endpoint& own) override { return noted("bind").bind(handle, own); }
    Fault listen(Handle handle, int backlog) override { return noted("listen").listen(handle, backlog); }
    Handle accept(Handle listener, Endpoint& peer, Fault& fault) override
    {
        return noted("accept").accept(listener, peer, fault);
    }
    Fault connect(Handle handle, const Endpoint& peer) override { return noted("connect").connect(handle, peer); }
    Fault endConnect(Handle handle) override { return noted("endConnect").endConnect(handle); }
    size_t receive(Handle handle, void* data, size_t size, Fault& fault) override
    {
        return noted("receive").receive(handle, data, size, fault);
    }
    size_t send(Handle handle, const Piece* pieces, int count, Fault& fault) override
    {
        return noted("send").send(handle, pieces, count, fault);
    }
    int receiveBatch(Handle handle, Datagram* datagrams, int count, Fault& fault) override
    {
        return noted("receiveBatch").receiveBatch(handle, datagrams, count, fault);
    }
    int sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault) override
    {
        return noted("sendBatch").sendBatch(handle, datagrams, count, fault);
    }
    bool canSegment(Handle handle) override { return noted("canSegment").canSegment(handle); }
    int sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault) override
    {
        return noted("sendSegmented").sendSegmented(handle, datagrams, count, fault);
    }
    bool getOwnEndpoint(Handle handle, Endpoint& own) override
    {
        return noted("getOwnEndpoint").getOwnEndpoint(handle, own);
    }
    bool getPeerEndpoint(Handle handle, Endpoint& peer) override
    {
        return noted("getPeerEndpoint").getPeerEndpoint(handle, peer);
    }
    void setOption(Handle handle, Option option, int value) override
    {
        noted("setOption").setOption(handle, option, value);
    }
    void watchPeer(Handle handle, const zet::NetLimits& limits) override
    {
        noted("watchPeer").watchPeer(handle, limits);
    }
    std::unique_ptr<zet::inner::Poller> makePoller() override { return noted("makePoller").makePoller(); }
    void resolve(const char* name, Answer answer, const Asker&) override
    {
        noted("resolve");
        m_Questions.emplace_back(name, std::move(answer));
    }

    // Answers the questions that wait, by these numeric addresses.
    void answer(const std::vector<const char*>& addresses)
    {
        std::vector<Endpoint> found(addresses.size());
        for (size_t i = 0; i < found.size(); ++i)
            parse(addresses[i], 0, found[i]);
        for (const auto& [name, give] : std::exchange(m_Questions, {}))
            give(found);
    }
    long count(const std::string& call) const
    {
        const auto found = m_Counts.find(call);
        return found == m_Counts.end() ? 0 : found->second;
    }

    std::vector<std::pair<std::string, Answer>> m_Questions;
    bool m_HasIPv6 = true;

protected:
    Door& noted(const char* call)
    {
        ++m_Counts[call];
        return *getReal();
    }

private:
    std::map<std::string, long> m_Counts;
};

} // namespace test
