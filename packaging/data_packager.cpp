#include "packaging/data_packager.h"

#include "framework/log.h"
#include "packaging/wire/value_form.h"

COMMONGROUND_DEFINE_VALUE_OPERATIONS(CDataPackager)

CDataPackager& CDataPackager::operator=(const CDataPackager& other)
{
    if (this == &other)
        return *this;
    Clear();
    m_PackageID = other.m_PackageID;
    if (Alloc(other.m_iDataSize) && Write(other.m_Buffer, other.m_iDataSize))
        m_iReadPointer = other.m_iReadPointer;
    return *this;
}

bool CDataPackager::Alloc(int size)
{
    if (m_iBufSize - m_iDataSize >= size)
        return true;
    zet::Log::error(L"CDataPackager Alloc Error: m_iBufSize %d, m_iDataSize %d, allocSize %d", m_iBufSize, m_iDataSize,
                    size);
    return false;
}

void CDataPackager::Reset()
{
    m_iReadPointer = 0;
    m_iDataSize = 0;
}

void CDataPackager::Clear()
{
    m_PackageID = 0;
    m_iBufSize = kCapacity;
    m_iDataSize = 0;
    m_iReadPointer = 0;
    std::memset(m_Buffer, 0, sizeof m_Buffer);
}

void CDataPackager::utf16Tutf32(unsigned long* out, int, const unsigned short* in, int inSize)
{
    for (int i = 0; i < inSize; ++i)
        out[i] = wire::widenUnit(in[i]);
}

void CDataPackager::utf32Tutf16(unsigned short* out, int, const unsigned long* in, int inSize)
{
    for (int i = 0; i < inSize; ++i)
    {
        const bool wide = in[i] > 0xFFFF;
        *out++ = wide ? wire::kWideLead : static_cast<unsigned short>(in[i]);
        if (wide)
            *out++ = wire::kWideTrail;
    }
}
