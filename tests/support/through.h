// Sources that turn fast ways of reading off, for tests that compare them with the slow ones.
#pragma once

#include "tests/support/loopback.h"

namespace test
{

// A source of its own before another one.
class Through : public zet::Input
{
public:
    explicit Through(zet::Input& input) : m_Input(input) {}
    int available() const override { return m_Input.available(); }
    int peek(void* data, int size) override { return m_Input.peek(data, size); }
    int read(void* data, int size) override { return m_Input.read(data, size); }
    const unsigned char* view(int size) override
    {
        ++m_Views;
        return m_Input.view(size);
    }
    int skip(int size) override { return m_Input.skip(size); }

    zet::Input& m_Input;
    int m_Views = 0;
};

// The same without bytes in place: a frame is read step by step.
class Unshown : public Through
{
public:
    using Through::Through;
    const unsigned char* view(int) override { return nullptr; }
};

// The packet reader alone reads its packets, since it does not read from the stream itself.
class SlowClient : public Client
{
public:
    using Client::Client;
    bool attach(unsigned int handle) override
    {
        if (!Client::attach(handle))
            return false;
        m_PacketReader.attachOwner(&m_Through);
        return true;
    }

    Through m_Through{*this};
};

} // namespace test
