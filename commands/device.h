// A phone or another device that drives the game on the television: keys, mouse, touch, sensor and rhythm, and a
// picture of the screen in the other direction. The application on the phone and the client agree on the codes.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/device.h"
#include "framework/buffer.h"
#include "packaging/command_head.h"

// Between device and client.
class COMMONGROUND_API CCmdConnectPhone : public CCmdPlatform
{
public:
    CCmdConnectPhone() : CCmdPlatform(command_id::CCmdConnectPhone) {}
    COMMAND_INTERFACE(CCmdConnectPhone)

    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
};

// Between device and client.
class COMMONGROUND_API CCmdConnectMobileInfo : public CCmdPlatform
{
public:
    CCmdConnectMobileInfo() : CCmdPlatform(command_id::CCmdConnectMobileInfo) {}
    COMMAND_INTERFACE(CCmdConnectMobileInfo)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Between device and client.
class COMMONGROUND_API CCmdConnectEvent : public CCmdPlatform
{
public:
    CCmdConnectEvent() : CCmdPlatform(command_id::CCmdConnectEvent) {}
    COMMAND_INTERFACE(CCmdConnectEvent)

    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
};

// Between device and client.
class COMMONGROUND_API CCmdControlMode : public CCmdPlatform
{
public:
    CCmdControlMode() : CCmdPlatform(command_id::CCmdControlMode) {}
    COMMAND_INTERFACE(CCmdControlMode)

    unsigned char m_Byte1 = 0;
    int m_Value1 = 0;
};

// Device to client: a key.
class COMMONGROUND_API CCmdKeyEvent : public CCmdPlatform
{
public:
    CCmdKeyEvent() : CCmdPlatform(command_id::CCmdKeyEvent) {}
    COMMAND_INTERFACE(CCmdKeyEvent)

    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
    unsigned char m_Byte3 = 0;
};

// Device to client: a rhythm key.
class COMMONGROUND_API CCmdRhythmKeyEvent : public CCmdPlatform
{
public:
    CCmdRhythmKeyEvent() : CCmdPlatform(command_id::CCmdRhythmKeyEvent) {}
    COMMAND_INTERFACE(CCmdRhythmKeyEvent)

    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
    unsigned char m_Byte3 = 0;
};

// Device to client: the mouse.
class COMMONGROUND_API CCmdMouseEvent : public CCmdPlatform
{
public:
    CCmdMouseEvent() : CCmdPlatform(command_id::CCmdMouseEvent) {}
    COMMAND_INTERFACE(CCmdMouseEvent)

    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
    unsigned short m_Word1 = 0;
    unsigned short m_Word2 = 0;
};

// Device to client: a touch.
class COMMONGROUND_API CCmdTouchEvent : public CCmdPlatform
{
public:
    CCmdTouchEvent() : CCmdPlatform(command_id::CCmdTouchEvent) {}
    COMMAND_INTERFACE(CCmdTouchEvent)

    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
    unsigned char m_Byte3 = 0;
    unsigned short m_Word1 = 0;
    unsigned short m_Word2 = 0;
};

// Device to client: the motion sensor. Each axis is one byte: from -4 to just below 4, in steps of a 32nd.
class COMMONGROUND_API CCmdSensorEvent : public CCmdPlatform
{
public:
    CCmdSensorEvent() : CCmdPlatform(command_id::CCmdSensorEvent) {}
    COMMAND_INTERFACE(CCmdSensorEvent)

    // Each value is sent as one byte.
    void initGSensorData(float x, float y, float z);
    // The value of an axis, as it was sent.
    float getGSensorX() const { return convertByte2GSensor(m_SensorX); }
    float getGSensorY() const { return convertByte2GSensor(m_SensorY); }
    float getGSensorZ() const { return convertByte2GSensor(m_SensorZ); }

    unsigned char m_Byte1 = 0;
    unsigned char m_SensorX = 0;
    unsigned char m_SensorY = 0;
    unsigned char m_SensorZ = 0;

protected:
    // A value outside the scale, on either side, becomes the lowest code, not the nearest.
    unsigned char convertGSensor2Byte(float value) const;
    // The value of a code.
    float convertByte2GSensor(unsigned char value) const;
};

// Between device and client.
class COMMONGROUND_API CCmdCameraEvent : public CCmdPlatform
{
public:
    CCmdCameraEvent() : CCmdPlatform(command_id::CCmdCameraEvent) {}
    COMMAND_INTERFACE(CCmdCameraEvent)

    unsigned char m_Byte1 = 0;
};

// Between device and client. Answered by CCmdOpenCameraReply.
class COMMONGROUND_API CCmdOpenCamera : public CCmdPlatform
{
public:
    CCmdOpenCamera() : CCmdPlatform(command_id::CCmdOpenCamera) {}
    COMMAND_INTERFACE(CCmdOpenCamera)

    unsigned char m_Byte1 = 0;
};

// Answers CCmdOpenCamera.
class COMMONGROUND_API CCmdOpenCameraReply : public CCmdPlatform
{
public:
    CCmdOpenCameraReply() : CCmdPlatform(command_id::CCmdOpenCameraReply) {}
    COMMAND_INTERFACE(CCmdOpenCameraReply)

    unsigned char m_Byte1 = 0;
};

// Between device and client. Answered by CCmdHeartReply.
class COMMONGROUND_API CCmdHeartEvent : public CCmdPlatform
{
public:
    CCmdHeartEvent() : CCmdPlatform(command_id::CCmdHeartEvent) {}
    COMMAND_INTERFACE(CCmdHeartEvent)
};

// Answers CCmdHeartEvent.
class COMMONGROUND_API CCmdHeartReply : public CCmdPlatform
{
public:
    CCmdHeartReply() : CCmdPlatform(command_id::CCmdHeartReply) {}
    COMMAND_INTERFACE(CCmdHeartReply)
};

// Device to client: asks for a picture of the screen. Answered by CCmdScreenSynResponse.
class COMMONGROUND_API CCmdScreenSynRequest : public CCmdPlatform
{
public:
    CCmdScreenSynRequest() : CCmdPlatform(command_id::CCmdScreenSynRequest) {}
    COMMAND_INTERFACE(CCmdScreenSynRequest)
};

// Answers CCmdScreenSynRequest: the picture.
class COMMONGROUND_API CCmdScreenSynResponse : public CCmdPlatform
{
public:
    CCmdScreenSynResponse() : CCmdPlatform(command_id::CCmdScreenSynResponse) {}
    COMMAND_INTERFACE(CCmdScreenSynResponse)

    // The picture.
    zet::Buffer m_Data1;
};

// Answered by CCmdStartKinectResponse.
class COMMONGROUND_API CCmdStartKinect : public CCmdPlatform
{
public:
    CCmdStartKinect() : CCmdPlatform(command_id::CCmdStartKinect) {}
    COMMAND_INTERFACE(CCmdStartKinect)

    bool m_Flag1 = false;
};

// Answers CCmdStartKinect.
class COMMONGROUND_API CCmdStartKinectResponse : public CCmdPlatform
{
public:
    CCmdStartKinectResponse() : CCmdPlatform(command_id::CCmdStartKinectResponse) {}
    COMMAND_INTERFACE(CCmdStartKinectResponse)

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Answered by CCmdTelvaInfoResponse.
class COMMONGROUND_API CCmdTelvaInfoRequest : public CCmdPlatform
{
public:
    CCmdTelvaInfoRequest() : CCmdPlatform(command_id::CCmdTelvaInfoRequest) {}
    COMMAND_INTERFACE(CCmdTelvaInfoRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdTelvaInfoRequest.
class COMMONGROUND_API CCmdTelvaInfoResponse : public CCmdPlatform
{
public:
    CCmdTelvaInfoResponse() : CCmdPlatform(command_id::CCmdTelvaInfoResponse) {}
    COMMAND_INTERFACE(CCmdTelvaInfoResponse)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};
