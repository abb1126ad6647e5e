// Bytes in memory as streams: a growing store, and a view of existing bytes.
#pragma once

#include "framework/stream.h"

namespace zet
{

// A view of bytes, which must outlive it.
class COMMONGROUND_API MemoryInput final : public Input
{
public:
    MemoryInput() = default;
    // The same as show().
    MemoryInput(const void* bytes, int size) { show(bytes, size); }

    // Changes the view to other bytes; a negative size counts as 0.
    void show(const void* bytes, int size)
    {
        m_At = static_cast<const unsigned char*>(bytes);
        m_Size = size > 0 ? size : 0;
    }
    int available() const override { return m_Size; }
    int peek(void* data, int size) override;
    int read(void* data, int size) override;
    const unsigned char* view(int size) override { return size >= 0 && size <= m_Size ? m_At : nullptr; }
    int skip(int size) override;

private:
    const unsigned char* m_At = nullptr;
    int m_Size = 0;
};

// Reads from the front, writes at the end. A write may discard the bytes already read and move the rest.
class COMMONGROUND_API MemoryStream : public IO
{
public:
    // An empty stream. The caller holds it.
    static Unknown::Handle_T<MemoryStream> createInstance();

    // Bytes written and not read yet.
    int getSize() const { return available(); }
    // Drops all bytes, also those not read yet; the memory is kept.
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
