// What devices, games and the device service agree on.
#pragma once

namespace arena::device
{

// CCmdConnectEvent::m_Byte1: what has connected. m_Byte2 is the seat, which one phone and one game share. The service
// answers with the same, or with kNothing for a seat that is taken.
enum Kind : unsigned char
{
    kNothing = 0,
    kPhone = 1,
    kGame = 2
};

// CCmdConnectPhone: the seat, and whether a phone is there.
// CCmdOpenCamera::m_Byte1 is 1 to open and 0 to close. CCmdOpenCameraReply::m_Byte1 is 0, or 1 if nothing has changed.
// CCmdCameraEvent::m_Byte1 is 1 after the start of the frames and 0 after their end.
// CCmdRemoteCamera: whether mask images come with the skeletons.

// CCmdSkeletons::m_Values[0] is the number of the frame; one skeleton, whose joint i is at (number % 100, i). The first
// image of the skeletons and the mask image have the same bytes: (number + position) % 256.
inline constexpr int kMaskWidth = 64;
inline constexpr int kMaskHeight = 48;

constexpr unsigned char maskByteOf(unsigned int number, int position)
{
    return static_cast<unsigned char>(number + static_cast<unsigned int>(position));
}

} // namespace arena::device
