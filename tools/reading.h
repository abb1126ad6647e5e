// One reading of a class: what its Read makes of bytes, and what its Write gives back.
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
    // What Write gave, also after a failed Read or Write.
    std::string m_Rewrite;
    std::shared_ptr<void> m_Object;
};

bool hasForm(const ClassInfo& info, Form form);

// Reads the bytes into a new object through a packager of the form, and writes the object into another.
// For a command the bytes are the payload without its frame.
Reading readBytes(const ClassInfo& info, Form form, std::string_view bytes);
// What the class's Write gives for an object; write is its result.
std::string writeObject(const ClassInfo& info, Form form, const void* object, bool& write);

} // namespace tools
