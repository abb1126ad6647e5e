// The record codec: a fixed 65,536 bytes into which values are written and out of which they are read in the same
// order, without tags. Numbers are big-endian, text is a 30-bit count and little-endian UTF-16, a float is the text
// of "%f" after a length byte, identifiers are raw.
#pragma once

#include "framework/buffer.h"
#include "framework/export.h"
#include "framework/string.h"
#include "framework/uuid.h"
#include "packaging/value_operations.h"

namespace wire
{
struct Access;
}

// Holds its storage inside itself and never allocates. Not locked: one object belongs to one thread at a time.
class COMMONGROUND_API CDataPackager
{
public:
    // Empty, all bytes zero.
    CDataPackager() { Clear(); }
    CDataPackager(const CDataPackager& other) : CDataPackager() { *this = other; }
    // Copies the tag, the data written and the read pointer; all other bytes become zero.
    CDataPackager& operator=(const CDataPackager& other);

    COMMONGROUND_VALUE_OPERATIONS

    // True if size more bytes fit. Otherwise logs an error and changes nothing: this storage never grows.
    bool Alloc(int size);
    // Empties the data for reuse; the old bytes and the tag stay.
    void Reset();
    // Back to the state of a new object, all 65,536 bytes zero.
    void Clear();

    // A tag for the owner; nothing here reads it and it is not sent.
    void SetPackageID(unsigned short id) { m_PackageID = id; }
    unsigned short GetPackageID() const { return m_PackageID; }

    // The first byte of the data, whatever the read pointer.
    const unsigned char* GetBuffer() const { return m_Buffer; }
    // Bytes written.
    int GetDataSize() const { return m_iDataSize; }
    // Bytes that fit in all.
    int GetBufferSize() const { return m_iBufSize; }
    // Bytes read.
    int GetReadPointer() const { return m_iReadPointer; }

    // The conversions of the text form; outSize is not used, so out must have space for what they can give:
    // inSize values, or twice inSize units. A surrogate pair does not become its code point, nor a code point
    // above 0xFFFF its pair; the peers do the same.
    static void utf16Tutf32(unsigned long* out, int outSize, const unsigned short* in, int inSize);
    static void utf32Tutf16(unsigned short* out, int outSize, const unsigned long* in, int inSize);

private:
    friend struct wire::Access;

    static constexpr int kCapacity = 0x10000;

    unsigned short m_PackageID;
    int m_iBufSize;
    int m_iDataSize;
    int m_iReadPointer;
    unsigned char m_Buffer[kCapacity];
};
