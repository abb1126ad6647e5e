#include "dispatch/analyser.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "packaging/cmd_packager.h"

#include <exception>

CCmdAnalyser::CCmdAnalyser(CmdFallback unknownCmd, CmdFallback errorCmd)
    : m_pfnUnknownCmd(unknownCmd), m_pfnErrorCmd(errorCmd)
{
}

void CCmdAnalyser::Install(unsigned short id, CmdProcess process, CmdHandler handler)
{
    m_Commands[id] = {process, handler};
}

int CCmdAnalyser::Analyse(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const
{
    // The log takes what it is given by reference, and this one is to stay in a register.
    const unsigned short id = pk.GetCmdID();
    if (id >= kCommandIdLimit)
    {
        zet::Log::error(L"CCmdAnalyser cannot Analyse OverFlow CMD(0x%04x)", pk.GetCmdID());
        return 0;
    }
    // What a handler or a fallback throws is this command's loss and goes no further.
    try
    {
        dispatch(m_Commands[id], pk, arg1, arg2);
    }
    catch (const std::exception& fault)
    {
        zet::Log::error(L"Exception in a command handler: %s", zet::StringHelper::utf8ToWide(fault.what()));
        zet::Log::whistle(false);
    }
    catch (...)
    {
        zet::Log::error(L"Exception in a command handler");
        zet::Log::whistle(false);
    }
    return 0;
}

void CCmdAnalyser::dispatch(const Entry& entry, CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const
{
    if (!entry.m_Process)
    {
        if (m_pfnUnknownCmd)
            m_pfnUnknownCmd(&pk, arg1, arg2);
        else
            zet::Log::error(L"CCmdAnalyser cannot Analyse NULL command(0x%04x)", pk.GetCmdID());
    }
    else if (!entry.m_Process(&pk, entry.m_Handler, arg1, arg2))
    {
        // The second closing parenthesis belongs to the text.
        if (m_pfnErrorCmd)
            m_pfnErrorCmd(&pk, arg1, arg2);
        else
            zet::Log::error(L"CCmdAnalyser cannot Analyse ERROR command(0x%04x))", pk.GetCmdID());
    }
}

int CCmdAnalyser::Analyse(const void* data, int size, unsigned long arg1, unsigned long arg2) const
{
    if (!data)
    {
        zet::Log::error(L"CCmdAnalyser cannot Analyse NULL data");
        return 0;
    }
    CCmdPackager pk;
    if (pk.Unpack(data, size) <= 0)
    {
        zet::Log::error(L"cmdPackager Unpack data error");
        return 0;
    }
    return Analyse(pk, arg1, arg2);
}
