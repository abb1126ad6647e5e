// One reading of a class: the result of its Read for given bytes, and of its Write.
#pragma once

#include "tools/class_table.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <string_view>

namespace tools
{

enum class Form
{
    kCmd,
    kData
};

struct Reading
{
    bool m_Read = false;
    int m_Consumed = 0;
    int m_Size = 0;
    bool m_Write = false;
    // The output of Write, also after a failed Read or Write.
    std::string m_Rewrite;
    std::shared_ptr<void> m_Object;
};

bool hasForm(const ClassInfo& info, Form form);

// Reads the bytes into a new object by a packager of the form. For a command the bytes are the payload without its
// frame. Nothing is written: m_Write stays false.
Reading readOnly(const ClassInfo& info, Form form, std::string_view bytes);
// The same, and writes the object to another packager.
Reading readBytes(const ClassInfo& info, Form form, std::string_view bytes);
// The output of the class's Write for an object; write is its result.
std::string writeObject(const ClassInfo& info, Form form, const void* object, bool& write);

} // namespace tools
