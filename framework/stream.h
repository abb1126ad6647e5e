// Byte sources and sinks, and the thin streams over them.
#pragma once

#include "framework/exception.h"
#include "framework/unknown.h"

#include <vector>

namespace zet
{

// A source of bytes. Counts are bytes; each operation returns the number delivered, 0 if there are none.
class COMMONGROUND_API Input : public virtual Unknown
{
public:
    // Bytes that can be read at once.
    virtual int available() const = 0;
    // Copies up to size bytes without consuming them.
    virtual int peek(void* data, int size) = 0;
    // Copies up to size bytes and consumes them.
    virtual int read(void* data, int size) = 0;
    // The next size bytes in place, not consumed, or null if the source cannot show them in one piece. Valid until the
    // source is next used.
    virtual const unsigned char* view(int size);
    // Skips up to size bytes.
    virtual int skip(int size);
};

// A sink of bytes; write returns the number accepted.
class COMMONGROUND_API Output : public virtual Unknown
{
public:
    // Appends up to size bytes. Returns the number accepted.
    virtual int write(const void* data, int size) = 0;
};

// A source and a sink in one.
class COMMONGROUND_API IO : public Input, public Output
{
};

// Reads from an Input. Constructed from a plain pointer it does not own the source, which must outlive it; constructed
// from a handle it keeps the source alive. A stream without a source is empty.
class COMMONGROUND_API InputStream
{
public:
    InputStream() = default;
    // Over a source, which may be null.
    InputStream(Input* input) : m_Input(input) {}
    InputStream(const Unknown::Handle_T<Input>& input) : m_Input(input.get()), m_Owner(input) {}

    // The source; null for a stream without one.
    Input* getInput() const { return m_Input; }
    // The operations of the source; 0 and null without one.
    int available() const { return m_Input ? m_Input->available() : 0; }
    bool isEmpty() const { return available() <= 0; }
    int peek(void* data, int size) { return m_Input ? m_Input->peek(data, size) : 0; }
    int read(void* data, int size) { return m_Input ? m_Input->read(data, size) : 0; }
    const unsigned char* view(int size) { return m_Input ? m_Input->view(size) : nullptr; }
    int skip(int size) { return m_Input ? m_Input->skip(size) : 0; }

    // Little-endian values; false on a short read.
    bool read16(unsigned short& value);
    bool read32(unsigned int& value);

private:
    Input* m_Input = nullptr;
    Unknown::Handle_T<Input> m_Owner;
};

// Writes to an Output, with the ownership rules of InputStream.
class COMMONGROUND_API OutputStream
{
public:
    OutputStream() = default;
    // Over a sink, which may be null.
    OutputStream(Output* output) : m_Output(output) {}
    OutputStream(const Unknown::Handle_T<Output>& output) : m_Output(output.get()), m_Owner(output) {}

    // The sink; null for a stream without one.
    Output* getOutput() const { return m_Output; }
    // Writes to the sink. Returns the number of bytes accepted; 0 without a sink.
    int write(const void* data, int size) { return m_Output ? m_Output->write(data, size) : 0; }

    // Little-endian values. False if the sink does not accept all bytes; a part may have been written.
    bool write16(unsigned short value);
    bool write32(unsigned int value);

private:
    Output* m_Output = nullptr;
    Unknown::Handle_T<Output> m_Owner;
};

// The stream form of an identifier is its 16 bytes, of a vector a Varint count and the identifiers. A short read or
// write throws Exception.
COMMONGROUND_API OutputStream& operator<<(OutputStream& stream, const Uuid& id);
COMMONGROUND_API InputStream& operator>>(InputStream& stream, Uuid& id);
COMMONGROUND_API OutputStream& operator<<(OutputStream& stream, const std::vector<Uuid>& ids);
COMMONGROUND_API InputStream& operator>>(InputStream& stream, std::vector<Uuid>& ids);

} // namespace zet
