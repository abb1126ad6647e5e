// Sent by the camera process to the game: the skeletons that it has found, and mask images of the player.
// Both sides agree on the pixel layout and the meaning of the numbers. These commands have no account.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/camera.h"
#include "framework/quillo/skeletons.h"
#include "packaging/command_head.h"

// The maximum bytes of an image. Two full images and two skeletons fit in one stream frame of about 114,000 bytes. A
// connection over UDP takes frames of at most 32,767 bytes, so it cannot carry even one full image.
inline constexpr int kMaskImageSize = 56448;

// Between camera process and client. The flag is true unless its sender sets otherwise.
class COMMONGROUND_API CCmdRemoteCamera : public CCmdHead
{
public:
    CCmdRemoteCamera() : CCmdHead(command_id::CCmdRemoteCamera) {}
    COMMAND_INTERFACE(CCmdRemoteCamera)

    bool m_Flag1 = true;
};

// Camera process to client: a mask image of the player. The object is large but cheap to create: only its first m_Size
// bytes are initialized.
class COMMONGROUND_API CCmdMaskImage : public CCmdHead
{
public:
    CCmdMaskImage() : CCmdHead(command_id::CCmdMaskImage) {}
    COMMAND_INTERFACE(CCmdMaskImage)

    int m_Width = 0;
    int m_Height = 0;
    // Bytes of the image. A sender must keep it within the array; bytes of a peer beyond the array are read and
    // dropped.
    int m_Size = 0;
    unsigned long m_Time = 0;
    unsigned char m_Data[kMaskImageSize];
};

// Camera process to client: the skeletons that it has found, up to two, and two mask images. Large but cheap to create,
// like CCmdMaskImage.
class COMMONGROUND_API CCmdSkeletons : public CCmdHead
{
public:
    static constexpr int kSkeletons = 2;
    static constexpr int kValues = 5;
    static constexpr int kShorts = 12;

    CCmdSkeletons() : CCmdHead(command_id::CCmdSkeletons) {}
    COMMAND_INTERFACE(CCmdSkeletons)

    // The number of following skeletons; those beyond the array are read and dropped.
    int m_SkeletonCount = 0;
    unsigned long m_Time = 0;
    // Camera process and game agree on the meaning of these values, and of the four triples.
    int m_Values[kValues] = {};
    // Four triples.
    short m_Shorts[kShorts] = {};
    // Of each joint x, y and the state are sent. The third float is not, and keeps its value in a read.
    Skeletons m_Skeletons[kSkeletons];
    // Bytes of the first image. A sender must keep it within the array.
    int m_Mask1Size = 0;
    unsigned char m_Mask1[kMaskImageSize];
    int m_Value1 = 0;
    int m_Value2 = 0;
    // Bytes of the second image, in the same way.
    int m_Mask2Size = 0;
    unsigned char m_Mask2[kMaskImageSize];
};
