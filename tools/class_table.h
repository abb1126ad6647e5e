// Every class that is sent, for the tools: constructs, reads, writes and describes objects by class name.
// Filled from dispatch/commands.def, playerdata/records.def and packs/messages.def, so a row without a class does not
// compile, and a class without a row is unknown to the tools.
#pragma once

#include "dispatch/command_process.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"
#include "packaging/wire/schema.h"

#include <memory>
#include <string_view>
#include <vector>

namespace tools
{

enum class Family
{
    kCommand,
    kRecord,
    kMessage
};

// One class. Objects are passed as pointers to void.
struct ClassInfo
{
    const char* m_Name = "";
    Family m_Family = Family::kRecord;
    // For a command its id and base; for a message the envelope that carries it.
    unsigned short m_Id = 0;
    const char* m_Base = "";
    // The reply's envelope, for a message that is sent both ways.
    const char* m_OtherEnvelope = "";
    const wire::Schema& (*m_Wire)() = nullptr;
    void* (*m_New)() = nullptr;
    void (*m_Delete)(void*) = nullptr;
    // Null if the class has no form for the packager.
    bool (*m_ReadCmd)(void*, CCmdPackager&) = nullptr;
    bool (*m_WriteCmd)(const void*, CCmdPackager&) = nullptr;
    bool (*m_ReadData)(void*, CDataPackager&) = nullptr;
    bool (*m_WriteData)(const void*, CDataPackager&) = nullptr;
    // Commands only.
    CmdProcess m_Process = nullptr;
    SocketCmdProcess m_ProcessSocket = nullptr;

    // A default-constructed object of the class.
    std::shared_ptr<void> make() const { return std::shared_ptr<void>(m_New(), m_Delete); }
};

// Commands by id, then records, then messages. Built at the first call; any thread.
const std::vector<ClassInfo>& classTable();
// Null for an unknown name.
const ClassInfo* findClass(std::string_view name);
// The classes with an id: none, one, or two.
const std::vector<const ClassInfo*>& classesOfId(unsigned short id);

} // namespace tools
