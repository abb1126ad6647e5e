#include "host/inner/rendered_figures.h"

#include "host/metrics.h"

namespace host::inner
{

void RenderedFigures::beginTick()
{
    m_Text.clear();
    m_PlainText.clear();
}

const std::string& RenderedFigures::getText()
{
    if (m_Text.empty())
        m_Text = m_Metrics.getText().getBuffer();
    return m_Text;
}

const std::string& RenderedFigures::getPlainText()
{
    if (m_PlainText.empty())
        m_PlainText = m_Metrics.getPlainText().getBuffer();
    return m_PlainText;
}

} // namespace host::inner
