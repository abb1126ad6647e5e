// A growing byte store: what is written can be read back.
#pragma once

#include "framework/stream.h"

namespace zet
{

// Reads from the front, writes at the end. A write may throw away what was read and move the rest.
class COMMONGROUND_API MemoryStream : public IO
{
public:
    static Unknown::Handle_T<MemoryStream> createInstance();

    // Bytes written and not yet read.
    int getSize() const { return available(); }
    void clear();

    int available() const override { return static_cast<int>(m_Bytes.size() - m_ReadAt); }
    int peek(void* data, int size) override;
    int read(void* data, int size) override;
    const unsigned char* view(int size) override;
    int skip(int size) override;
    int write(const void* data, int size) override;
    const wchar_t* getClassName() const override { return L"zet::MemoryStream"; }

private:
    std::vector<unsigned char> m_Bytes;
    size_t m_ReadAt = 0;
};

} // namespace zet
