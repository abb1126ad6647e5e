#include "host/inner/http_request.h"

#include <algorithm>

namespace host::inner
{

namespace
{

bool isTokenUnit(char unit)
{
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || (unit >= '0' && unit <= '9') ||
           std::string_view("!#$%&'*+-.^_`|~").find(unit) != std::string_view::npos;
}

bool isToken(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isTokenUnit);
}

// Letters of ASCII.
std::string lowered(std::string_view text)
{
    std::string result(text);
    for (char& unit : result)
        if (unit >= 'A' && unit <= 'Z')
            unit = static_cast<char>(unit - 'A' + 'a');
    return result;
}

std::string_view trimmed(std::string_view text)
{
    const size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

// Whether there is no control character but in line ends of CR LF. A CR at the end may be half of one.
bool hasGoodUnits(std::string_view text)
{
    for (size_t i = 0; i < text.size(); ++i)
    {
        const auto unit = static_cast<unsigned char>(text[i]);
        if (unit == '\r' && (i + 1 == text.size() || text[i + 1] == '\n'))
            ++i;
        else if ((unit < ' ' && unit != '\t') || unit == 0x7F)
            return false;
    }
    return true;
}

// Calls each(item) for the items of a list with commas.
template <class Each>
void forItems(std::string_view list, Each each)
{
    while (!list.empty())
    {
        const size_t comma = list.find(',');
        each(trimmed(list.substr(0, comma)));
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
    }
}

class Head
{
public:
    explicit Head(HttpRequest& request) : m_Request(request) {}

    // The head without its empty line.
    HttpRequest::State read(std::string_view text)
    {
        const size_t end = text.find("\r\n");
        const HttpRequest::State state = readLine(text.substr(0, end));
        if (state != HttpRequest::kWhole)
            return state;
        while (end != std::string_view::npos && !(text = text.substr(text.find("\r\n") + 2)).empty())
        {
            if (!readField(text.substr(0, text.find("\r\n"))))
                return HttpRequest::kInvalid;
            if (text.find("\r\n") == std::string_view::npos)
                break;
        }
        if (m_Hosts > 1 || (m_Hosts == 0 && m_Minor > 0))
            return HttpRequest::kInvalid;
        m_Request.m_KeepsAlive = m_Minor > 0 && !m_IsClosed;
        m_Request.m_WantsPlainText = m_TakesPlain && !m_TakesOpenMetrics;
        return state;
    }

private:
    HttpRequest::State readLine(std::string_view line)
    {
        const size_t first = line.find(' ');
        const size_t second = first == std::string_view::npos ? first : line.find(' ', first + 1);
        if (second == std::string_view::npos)
            return HttpRequest::kInvalid;
        const std::string_view method = line.substr(0, first);
        const std::string_view target = line.substr(first + 1, second - first - 1);
        const std::string_view version = line.substr(second + 1);
        const bool isVisible =
            std::all_of(target.begin(), target.end(), [](char unit) { return unit > ' ' && unit < 0x7F; });
        if (!isToken(method) || target.empty() || target[0] != '/' || !isVisible)
            return HttpRequest::kInvalid;
        if (version != "HTTP/1.1" && version != "HTTP/1.0")
            return HttpRequest::kInvalid;
        m_Minor = version.back() - '0';
        m_Request.m_Path = target.substr(0, target.find('?'));
        m_Request.m_IsHead = method == "HEAD";
        return m_Request.m_IsHead || method == "GET" ? HttpRequest::kWhole : HttpRequest::kOtherMethod;
    }
    bool readField(std::string_view line)
    {
        const size_t colon = line.find(':');
        if (colon == std::string_view::npos || !isToken(line.substr(0, colon)))
            return false;
        const std::string name = lowered(line.substr(0, colon));
        const std::string value = lowered(trimmed(line.substr(colon + 1)));
        if (name == "host")
        {
            ++m_Hosts;
            m_Request.m_Host = value;
            m_Request.m_HasHost = true;
        }
        else if (name == "connection")
            forItems(value, [this](std::string_view item) { m_IsClosed = m_IsClosed || item == "close"; });
        else if (name == "accept")
            forItems(value, [this](std::string_view item) { noteAccepted(trimmed(item.substr(0, item.find(';')))); });
        else if (name == "transfer-encoding" || name == "upgrade")
            return false;
        else if (name == "content-length")
            return value == "0";
        return true;
    }
    void noteAccepted(std::string_view type)
    {
        m_TakesPlain = m_TakesPlain || type == "text/plain";
        m_TakesOpenMetrics = m_TakesOpenMetrics || type == "application/openmetrics-text";
    }

    HttpRequest& m_Request;
    int m_Minor = 0;
    int m_Hosts = 0;
    bool m_IsClosed = false;
    bool m_TakesPlain = false;
    bool m_TakesOpenMetrics = false;
};

} // namespace

std::string_view hostOf(std::string_view value)
{
    const bool isBracketed = !value.empty() && value[0] == '[';
    size_t end = isBracketed ? value.find(']') : value.find(':');
    if (isBracketed)
    {
        if (end == std::string_view::npos)
            return {};
        ++end;
    }
    const std::string_view host = value.substr(0, end);
    const std::string_view port = value.substr(host.size());
    const bool isPort = port.empty() || (port[0] == ':' && port.find_first_not_of("0123456789", 1) == port.npos);
    return isPort ? host : std::string_view();
}

HttpRequest::State readRequest(std::string_view input, HttpRequest& request, size_t& used)
{
    const std::string_view start = input.substr(0, HttpRequest::kMostHead);
    const size_t end = start.find("\r\n\r\n");
    if (!hasGoodUnits(start.substr(0, end)))
        return HttpRequest::kInvalid;
    if (end == std::string_view::npos)
        return input.size() >= HttpRequest::kMostHead ? HttpRequest::kTooLong : HttpRequest::kCut;
    used = end + 4;
    request = HttpRequest();
    return Head(request).read(start.substr(0, end));
}

} // namespace host::inner
