// The commands of wirelens. Each returns the exit code: 0 success, 1 bad input, 2 wrong usage.
#pragma once

#include "tools/class_table.h"
#include "tools/line_filter.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace wirelens
{

// What decode reads. At most one framing, of input that is not a capture; neither is consecutive stream frames.
struct DecodeOptions
{
    bool m_Packets = false;
    bool m_Datagram = false;
    bool m_UdpStream = false;
    // What a capture lost or skipped as JSON lines among the commands, not as text on the standard error.
    bool m_Notices = false;
    // The number of commands only; the same by class, as JSON lines.
    bool m_Count = false;
    bool m_Summary = false;
    tools::LineFilter m_Filter;
    // A file with the tables of pack routers; empty for none.
    std::string m_PackTypes;
    // - is the standard input, and so is no path.
    std::vector<std::string> m_Paths;
};

int catalogue(bool asJson);
// As JSON without a class: all classes.
int schema(const std::string& className, bool asJson);
// Compares two documents of schema; without a newer one, with the classes of this build. 1 if a peer breaks, 2 if a
// document cannot be read.
int diff(const std::string& older, const std::string& newer, bool asJson);
// A codec in python, typescript or javascript, from the document at the path; from this build's classes without one.
int generate(const std::string& language, const std::string& path);
int makeNew(const std::string& className);
int read();
int explain(const std::string& className, const std::string& hex);
int decode(const DecodeOptions& options);
int dissector();
int docs();

// The class of a name, or null after a line on the standard error.
const tools::ClassInfo* classOf(const std::string& name);
// The document at a path, - for the standard input; empty after a line on the standard error.
std::optional<nlohmann::ordered_json> readDocument(const std::string& path);

// Prints one line to the standard error.
void warn(const wchar_t* line);

} // namespace wirelens
