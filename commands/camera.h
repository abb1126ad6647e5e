// What the process at the camera sends the game: the skeletons that it has found, and mask images of the player.
// The layout of the pixels and the meaning of the numbers are agreed between the two. These commands have no account.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/camera.h"
#include "framework/quillo/skeletons.h"
#include "packaging/command_head.h"

// Bytes that an object holds of an image. Two full ones and two skeletons go in one stream frame, which then has about
// 114,000 bytes. A connection over UDP takes frames of at most 32,767 bytes, so not even one full image goes there.
inline constexpr int kMaskImageSize = 56448;

// Switches the camera process.
class COMMONGROUND_API CCmdRemoteCamera : public CCmdHead
{
public:
    CCmdRemoteCamera() : CCmdHead(command_id::CCmdRemoteCamera) {}
    COMMAND_INTERFACE(CCmdRemoteCamera)

    bool m_Flag1 = true;
};

// A mask image. The object is large and light to make: of its bytes only the first m_Size have a value.
class COMMONGROUND_API CCmdMaskImage : public CCmdHead
{
public:
    CCmdMaskImage() : CCmdHead(command_id::CCmdMaskImage) {}
    COMMAND_INTERFACE(CCmdMaskImage)

    int m_Width = 0;
    int m_Height = 0;
    // A sender keeps it within the array; what a peer sends beyond that is read and dropped.
    int m_Size = 0;
    unsigned long m_Time = 0;
    unsigned char m_Data[kMaskImageSize];
};

// Up to two skeletons and two mask images, large and light to make as the image above.
class COMMONGROUND_API CCmdSkeletons : public CCmdHead
{
public:
    static constexpr int kSkeletons = 2;

    CCmdSkeletons() : CCmdHead(command_id::CCmdSkeletons) {}
    COMMAND_INTERFACE(CCmdSkeletons)

    // Skeletons that follow; those beyond the array are read and dropped.
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
