#include "tools/frame_writer.h"

#include "framework/buffer.h"
#include "framework/packet.h"

namespace tools
{

bool addStreamFrame(std::string& bytes, const CCmdPackager& command)
{
    zet::Buffer frame;
    if (!CCmdPackager_packageToBuffer(command, frame))
        return false;
    bytes.append(reinterpret_cast<const char*>(frame.getBuffer()), static_cast<size_t>(frame.getBufferSize()));
    return true;
}

bool addPacket(std::string& bytes, const CCmdPackager& command)
{
    const size_t begin = bytes.size();
    bytes.append(zet::PacketWriter::kHeadSize, '\0');
    if (!addStreamFrame(bytes, command))
    {
        bytes.resize(begin);
        return false;
    }
    const size_t length = bytes.size() - begin - zet::PacketWriter::kHeadSize;
    for (size_t i = 0; i < zet::PacketWriter::kHeadSize; ++i)
        bytes[begin + i] = static_cast<char>(length >> 8 * i);
    return true;
}

bool addDatagramFrame(std::string& bytes, const CCmdPackager& command)
{
    const int size = command.Pack(nullptr, 0);
    if (size <= 0)
        return false;
    const size_t begin = bytes.size();
    bytes.resize(begin + static_cast<size_t>(size));
    return command.Pack(bytes.data() + begin, size) == size;
}

} // namespace tools
