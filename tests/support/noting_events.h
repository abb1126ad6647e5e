// A connection that notes its events as texts: "established", "writable", or the text of the cause of its end.
#pragma once

#include "net/connection_events.h"

#include <functional>
#include <string>
#include <vector>

namespace test
{

template <class Base>
class NotingEvents : public Base
{
public:
    using Base::Base;

    void onEstablished() override { m_Events.emplace_back(L"established"); }
    void onEnd(const zet::EndCause& cause) override
    {
        m_Cause = cause;
        m_Events.emplace_back(cause.getText().getBuffer());
        if (m_OnEnd)
            m_OnEnd();
    }
    void onWritable() override { m_Events.emplace_back(L"writable"); }

    std::vector<std::wstring> m_Events;
    zet::EndCause m_Cause;
    std::function<void()> m_OnEnd;
};

using Events = std::vector<std::wstring>;

} // namespace test
