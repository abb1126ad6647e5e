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

// Switches the camera process.
class COMMONGROUND_API CCmdRemoteCamera : public CCmdHead
{
public:
    CCmdRemoteCamera() : CCmdHead(command_id::CCmdRemoteCamera) {}
    COMMAND_INTERFACE(CCmdRemoteCamera)

    bool m_Flag1 = true;
};

// A mask image. The object is large but cheap to create: only its first m_Size bytes are initialized.
class COMMONGROUND_API CCmdMaskImage : public CCmdHead
{
public:
    CCmdMaskImage() : CCmdHead(command_id::CCmdMaskImage) {}
    COMMAND_INTERFACE(CCmdMaskImage)

    int m_Width = 0;
    int m_Height = 0;
    // A sender must keep it within the array; bytes of a peer beyond the array are read and dropped.
    int m_Size = 0;
    unsigned long m_Time = 0;
    unsigned char m_Data[kMaskImageSize];
};

// Up to two skeletons and two mask images; large but cheap to create, like the image above.
class COMMONGROUND_API CCmdSkeletons : public CCmdHead
{
public:
    static constexpr int kSkeletons = 2;

    CCmdSkeletons() : CCmdHead(command_id::CCmdSkeletons) {}
    COMMAND_INTERFACE(CCmdSkeletons)

    // The number of following skeletons; those beyond the array are read and dropped.
    int m_SkeletonCount = 0;
    unsigned long m_Time = 0;
    int m_Values[5] = {};
    // Four triples.
    short m_Shorts[12] = {};
    Skeletons m_Skeletons[kSkeletons];
    int m_Mask1Size = 0;
    unsigned char m_Mask1[kMaskImageSize];
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Mask2Size = 0;
    unsigned char m_Mask2[kMaskImageSize];
};
