// The text of figures, rendered for all clients of a tick together.
#pragma once

#include "framework/export.h"

#include <string>

namespace host
{
class Metrics;
}

namespace host::inner
{

// Renders each format at the first request of a tick; further requests of that tick get the same text.
class COMMONGROUND_API RenderedFigures
{
public:
    // The metrics must outlive this object.
    explicit RenderedFigures(const Metrics& metrics) : m_Metrics(metrics) {}

    // The texts of ticks before are not used again.
    void beginTick();
    // Valid until beginTick().
    const std::string& getText();
    const std::string& getPlainText();

private:
    const Metrics& m_Metrics;
    // Empty until they are rendered.
    std::string m_Text;
    std::string m_PlainText;
};

} // namespace host::inner
