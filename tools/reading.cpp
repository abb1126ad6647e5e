#include "tools/reading.h"

namespace tools
{

namespace
{

template <class P>
std::string bytesOf(const P& packager)
{
    return std::string(reinterpret_cast<const char*>(packager.GetBuffer()),
                       static_cast<size_t>(packager.GetDataSize()));
}

template <class P>
void read(Reading& reading, P& packager, std::string_view bytes, bool (*readObject)(void*, P&))
{
    // Bytes beyond the packager's capacity are dropped, as a sender's packager would have done.
    packager.Write(bytes.data(), static_cast<int>(bytes.size()));
    reading.m_Read = readObject(reading.m_Object.get(), packager);
    reading.m_Consumed = packager.GetReadPointer();
    reading.m_Size = packager.GetDataSize();
}

} // namespace

bool hasForm(const ClassInfo& info, Form form)
{
    return form == Form::kCmd ? info.m_ReadCmd != nullptr : info.m_ReadData != nullptr;
}

std::string writeObject(const ClassInfo& info, Form form, const void* object, bool& write)
{
    if (form == Form::kCmd)
    {
        CCmdPackager packager;
        write = info.m_WriteCmd(object, packager);
        return bytesOf(packager);
    }
    CDataPackager packager;
    write = info.m_WriteData(object, packager);
    return bytesOf(packager);
}

Reading readOnly(const ClassInfo& info, Form form, std::string_view bytes)
{
    Reading reading;
    reading.m_Object = info.make();
    if (form == Form::kCmd)
    {
        CCmdPackager packager;
        packager.SetCmdID(info.m_Id);
        read(reading, packager, bytes, info.m_ReadCmd);
    }
    else
    {
        CDataPackager packager;
        read(reading, packager, bytes, info.m_ReadData);
    }
    return reading;
}

Reading readBytes(const ClassInfo& info, Form form, std::string_view bytes)
{
    Reading reading = readOnly(info, form, bytes);
    reading.m_Rewrite = writeObject(info, form, reading.m_Object.get(), reading.m_Write);
    return reading;
}

} // namespace tools
