#include "framework/stream.h"

#include "framework/buffer.h"
#include "framework/memory_stream.h"

#include <gtest/gtest.h>

#include <string>

using zet::Buffer;
using zet::Exception;
using zet::InputStream;
using zet::MemoryStream;
using zet::OutputStream;
using zet::Uuid;
using zet::Varint;

namespace
{

using Memory = zet::Unknown::Handle_T<MemoryStream>;

// Accepts a fixed number of bytes.
class FullOutput : public zet::Output
{
public:
    explicit FullOutput(int room) : m_Room(room) {}
    int write(const void*, int size) override
    {
        const int count = size < m_Room ? size : m_Room;
        m_Room -= count;
        return count;
    }

private:
    int m_Room;
};

// Delivers single bytes and shows nothing in one piece, as a slow source may.
class DripInput : public zet::Input
{
public:
    explicit DripInput(int size) : m_Left(size) {}
    int available() const override { return m_Left; }
    int peek(void* data, int size) override
    {
        if (size <= 0 || m_Left <= 0)
            return 0;
        *static_cast<unsigned char*>(data) = static_cast<unsigned char>(m_Left);
        return 1;
    }
    int read(void* data, int size) override
    {
        const int count = peek(data, size);
        m_Left -= count;
        return count;
    }

private:
    int m_Left;
};

std::string contentOf(MemoryStream& memory)
{
    std::string bytes(static_cast<size_t>(memory.getSize()), '\0');
    EXPECT_EQ(memory.read(bytes.data(), static_cast<int>(bytes.size())), static_cast<int>(bytes.size()));
    return bytes;
}

std::wstring textOfThrow(const std::function<void()>& action)
{
    try
    {
        action();
    }
    catch (const Exception& exception)
    {
        return exception.getText().getBuffer();
    }
    return L"nothing was thrown";
}

TEST(MemoryInput, ShowsAndTakesTheBytesWhereTheyLie)
{
    const unsigned char bytes[] = {1, 2, 3, 4, 5};
    zet::MemoryInput input(bytes, 5);
    EXPECT_EQ(input.view(5), bytes);
    EXPECT_EQ(input.view(6), nullptr);
    EXPECT_EQ(input.view(-1), nullptr);
    unsigned char out[8] = {};
    EXPECT_EQ(input.peek(out, -1), 0);
    EXPECT_EQ(input.peek(out, 2), 2);
    EXPECT_EQ(input.read(out, 2), 2);
    EXPECT_EQ(out[1], 2);
    EXPECT_EQ(input.view(1), bytes + 2);
    EXPECT_EQ(input.skip(-1), 0);
    EXPECT_EQ(input.skip(1), 1);
    EXPECT_EQ(input.available(), 2);
    EXPECT_EQ(input.read(out, 8), 2);
    EXPECT_EQ(out[0], 4);
    EXPECT_EQ(input.read(out, 1), 0);
    EXPECT_EQ(input.skip(1), 0);
    input.show(bytes, -1);
    EXPECT_EQ(input.available(), 0);
    EXPECT_EQ(input.read(out, 8), 0);
}

} // namespace

TEST(MemoryStream, GivesBackWhatWasWritten)
{
    const Memory memory = MemoryStream::createInstance();
    EXPECT_EQ(memory->write("abcdef", 6), 6);
    EXPECT_EQ(memory->getSize(), 6);
    char bytes[8] = {};
    EXPECT_EQ(memory->peek(bytes, 3), 3);
    EXPECT_EQ(memory->available(), 6);
    EXPECT_EQ(memory->read(bytes, 4), 4);
    EXPECT_EQ(std::string(bytes), "abcd");
    EXPECT_EQ(memory->write("gh", 2), 2);
    EXPECT_EQ(contentOf(*memory), "efgh");
    EXPECT_EQ(memory->read(bytes, 1), 0);
    EXPECT_EQ(memory->getSize(), 0);
}

TEST(MemoryStream, TakesNoNegativeSizes)
{
    const Memory memory = MemoryStream::createInstance();
    memory->write("ab", 2);
    char byte = 0;
    EXPECT_EQ(memory->write("cd", -1), 0);
    EXPECT_EQ(memory->read(&byte, -1), 0);
    EXPECT_EQ(memory->peek(&byte, -1), 0);
    EXPECT_EQ(memory->skip(-1), 0);
    EXPECT_EQ(memory->view(-1), nullptr);
    EXPECT_EQ(memory->getSize(), 2);
}

TEST(MemoryStream, ViewShowsWithoutTaking)
{
    const Memory memory = MemoryStream::createInstance();
    memory->write("abc", 3);
    EXPECT_EQ(memory->skip(1), 1);
    const unsigned char* place = memory->view(2);
    ASSERT_NE(place, nullptr);
    EXPECT_EQ(place[0], 'b');
    EXPECT_EQ(memory->view(3), nullptr);
    EXPECT_EQ(memory->available(), 2);
    EXPECT_EQ(memory->skip(99), 2);
}

TEST(MemoryStream, StaysSmallWhileNeverEmpty)
{
    const Memory memory = MemoryStream::createInstance();
    unsigned char written = 0;
    unsigned char expected = 0;
    memory->write(&written, 1);
    for (int i = 0; i < 100000; ++i)
    {
        ++written;
        ASSERT_EQ(memory->write(&written, 1), 1);
        unsigned char byte = 0;
        ASSERT_EQ(memory->read(&byte, 1), 1);
        ASSERT_EQ(byte, expected++);
        ASSERT_EQ(memory->getSize(), 1);
    }
}

TEST(Input, SkipsBySmallReadsWhereNothingBetterIsThere)
{
    zet::Unknown::Handle_T<DripInput> input = new DripInput(5);
    InputStream stream(input.get());
    EXPECT_EQ(stream.view(1), nullptr);
    EXPECT_EQ(stream.skip(3), 3);
    EXPECT_EQ(stream.available(), 2);
    EXPECT_EQ(stream.skip(9), 2);
    EXPECT_TRUE(stream.isEmpty());
}

TEST(InputStream, WithNoSourceIsEmpty)
{
    InputStream stream;
    unsigned short word = 7;
    unsigned int number = 7;
    EXPECT_TRUE(stream.isEmpty());
    EXPECT_EQ(stream.available(), 0);
    EXPECT_EQ(stream.skip(1), 0);
    EXPECT_FALSE(stream.read16(word));
    EXPECT_FALSE(stream.read32(number));
    EXPECT_EQ(word, 7);
    EXPECT_EQ(number, 7u);
}

TEST(InputStream, MadeFromAHandleKeepsItsSource)
{
    Memory memory = MemoryStream::createInstance();
    memory->write("a", 1);
    InputStream stream{zet::Unknown::Handle_T<zet::Input>(memory)};
    EXPECT_EQ(memory->getRefCount(), 2);
    memory.clear();
    char byte = 0;
    EXPECT_EQ(stream.read(&byte, 1), 1);
    EXPECT_EQ(byte, 'a');
}

TEST(InputStream, MadeFromAPointerOwnsNothing)
{
    const Memory memory = MemoryStream::createInstance();
    const InputStream stream(memory.get());
    EXPECT_EQ(memory->getRefCount(), 1);
}

TEST(Streams, WordsAreLittleEndian)
{
    const Memory memory = MemoryStream::createInstance();
    OutputStream out(memory.get());
    EXPECT_TRUE(out.write16(0x1234));
    EXPECT_TRUE(out.write32(0x89ABCDEF));
    const unsigned char* place = memory->view(6);
    ASSERT_NE(place, nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(place), 6), "\x34\x12\xEF\xCD\xAB\x89");
    InputStream in(memory.get());
    unsigned short word = 0;
    unsigned int number = 0;
    EXPECT_TRUE(in.read16(word));
    EXPECT_TRUE(in.read32(number));
    EXPECT_EQ(word, 0x1234);
    EXPECT_EQ(number, 0x89ABCDEFu);
}

TEST(Streams, UuidGoesAsItsBytes)
{
    Uuid id;
    ASSERT_EQ(zet::uuid_create(id), 0);
    const Memory memory = MemoryStream::createInstance();
    OutputStream out(memory.get());
    out << id;
    EXPECT_EQ(memory->getSize(), 16);
    InputStream in(memory.get());
    Uuid back;
    in >> back;
    EXPECT_TRUE(back == id);
}

TEST(Streams, VectorFollowsItsCount)
{
    std::vector<Uuid> ids(3);
    for (Uuid& id : ids)
        ASSERT_EQ(zet::uuid_create(id), 0);
    const Memory memory = MemoryStream::createInstance();
    OutputStream out(memory.get());
    out << ids;
    EXPECT_EQ(memory->getSize(), 1 + 3 * 16);
    InputStream in(memory.get());
    std::vector<Uuid> back(9);
    in >> back;
    EXPECT_TRUE(back == ids);
}

TEST(Streams, CutUuidThrowsAndLeavesTheValue)
{
    const Memory memory = MemoryStream::createInstance();
    memory->write("0123456789", 10);
    InputStream in(memory.get());
    Uuid id;
    id.m_Data1 = 5;
    EXPECT_EQ(textOfThrow([&] { in >> id; }), L"Uuid::operator >>");
    EXPECT_EQ(id.m_Data1, 5u);
}

TEST(Streams, FullOutputThrows)
{
    const zet::Unknown::Handle_T<FullOutput> full = new FullOutput(20);
    OutputStream out(full.get());
    out << Uuid();
    EXPECT_EQ(textOfThrow([&] { out << Uuid(); }), L"Uuid::operator <<");
    OutputStream none;
    EXPECT_EQ(textOfThrow([&] { none << Varint{1}; }), L"Varint::operator <<");
}

TEST(Streams, AnnouncedListOfTwoBillionCostsWhatIsThere)
{
    const Memory memory = MemoryStream::createInstance();
    OutputStream out(memory.get());
    out << Varint{0x7FFFFFFF} << Uuid();
    InputStream in(memory.get());
    std::vector<Uuid> ids;
    EXPECT_EQ(textOfThrow([&] { in >> ids; }), L"Uuid::operator >>");
    EXPECT_EQ(ids.size(), 1u);

    memory->clear();
    out << Varint{0x80000000u};
    EXPECT_EQ(textOfThrow([&] { in >> ids; }), L"std::vector invalid size.");
}

TEST(Streams, VarintUsesAGroupForSevenBits)
{
    const struct
    {
        unsigned long long m_Value;
        std::string m_Bytes;
    } cases[] = {{0, std::string(1, '\0')},
                 {127, "\x7F"},
                 {128, "\x80\x01"},
                 {300, "\xAC\x02"},
                 {0xFFFFFFFFFFFFFFFFULL, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x01"}};
    for (const auto& entry : cases)
    {
        const Memory memory = MemoryStream::createInstance();
        OutputStream out(memory.get());
        out << Varint{entry.m_Value};
        const int size = memory->getSize();
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(memory->view(size)), static_cast<size_t>(size)),
                  entry.m_Bytes);
        InputStream in(memory.get());
        Varint back;
        in >> back;
        EXPECT_EQ(back.m_Value, entry.m_Value);
        EXPECT_TRUE(in.isEmpty());
    }
}

TEST(Streams, VarintOfMoreThan64BitsThrows)
{
    const Memory memory = MemoryStream::createInstance();
    InputStream in(memory.get());
    Varint number;
    memory->write("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x02", 10);
    EXPECT_EQ(textOfThrow([&] { in >> number; }), L"Varint invalid size.");
    memory->clear();
    memory->write("\x80", 1);
    EXPECT_EQ(textOfThrow([&] { in >> number; }), L"Varint::operator >>");
}

TEST(Streams, BufferFollowsItsSize)
{
    Buffer buffer(200);
    buffer.getBuffer()[199] = 7;
    const Memory memory = MemoryStream::createInstance();
    OutputStream out(memory.get());
    out << buffer << Buffer();
    EXPECT_EQ(memory->getSize(), 2 + 200 + 1);
    InputStream in(memory.get());
    Buffer back(3);
    in >> back;
    EXPECT_TRUE(back == buffer);
    in >> back;
    EXPECT_EQ(back.getBufferSize(), 0);
}

TEST(Streams, BufferLargerThanTheStreamIsRefusedUnmade)
{
    const Memory memory = MemoryStream::createInstance();
    OutputStream out(memory.get());
    out << Varint{0x7FFFFFFF};
    memory->write("abc", 3);
    InputStream in(memory.get());
    Buffer buffer(1);
    EXPECT_EQ(textOfThrow([&] { in >> buffer; }), L"Buffer invalid size.");
    EXPECT_EQ(buffer.getBufferSize(), 1);
}
