// The socket of a service manager, at an abstract name.
#pragma once

#include <string>
#include <vector>

namespace test
{

class NotifyListener
{
public:
    NotifyListener();
    ~NotifyListener();
    NotifyListener(const NotifyListener&) = delete;
    NotifyListener& operator=(const NotifyListener&) = delete;

    // For the variable NOTIFY_SOCKET; empty if there is no socket.
    const std::string& name() const { return m_Name; }
    // Waits for the next message, at most a minute; then the empty text.
    std::string next();

private:
    int m_Handle;
    std::string m_Name;
};

} // namespace test
