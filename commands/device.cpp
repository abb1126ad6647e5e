#include "commands/device.h"

#include "packaging/wire/order.h"

#include <cmath>

namespace
{

// The sensor's byte covers twice the scale, with this number of steps per unit.
constexpr double kSensorScale = 4.0;
constexpr double kSensorSteps = 32.0;

} // namespace

WIRE_COMMAND(CCmdConnectPhone)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Byte2);
}

WIRE_COMMAND(CCmdConnectMobileInfo)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdConnectEvent)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Byte2);
}

WIRE_COMMAND(CCmdControlMode)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Value1);
}

WIRE_COMMAND(CCmdKeyEvent)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Byte2, r.m_Byte3);
}

WIRE_COMMAND(CCmdRhythmKeyEvent)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Byte2, r.m_Byte3);
}

WIRE_COMMAND(CCmdMouseEvent)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Byte2, r.m_Word1, r.m_Word2);
}

WIRE_COMMAND(CCmdTouchEvent)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Byte2, r.m_Byte3, r.m_Word1, r.m_Word2);
}

WIRE_COMMAND(CCmdSensorEvent)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_SensorX, r.m_SensorY, r.m_SensorZ);
}

void CCmdSensorEvent::initGSensorData(float x, float y, float z)
{
    m_SensorX = convertGSensor2Byte(x);
    m_SensorY = convertGSensor2Byte(y);
    m_SensorZ = convertGSensor2Byte(z);
}

// Computed in double: just below 4 a float sum would round up past the highest code.
unsigned char CCmdSensorEvent::convertGSensor2Byte(float value) const
{
    if (!(std::fabs(value) < kSensorScale))
        return 0;
    return static_cast<unsigned char>((value + kSensorScale) * kSensorSteps);
}

float CCmdSensorEvent::convertByte2GSensor(unsigned char value) const
{
    return static_cast<float>(value / kSensorSteps - kSensorScale);
}

WIRE_COMMAND(CCmdCameraEvent)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1);
}

WIRE_COMMAND(CCmdOpenCamera)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1);
}

WIRE_COMMAND(CCmdOpenCameraReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1);
}

WIRE_COMMAND(CCmdHeartEvent)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdHeartReply)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdScreenSynRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdScreenSynResponse)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Data1);
}

WIRE_COMMAND(CCmdStartKinect)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Flag1);
}

WIRE_COMMAND(CCmdStartKinectResponse)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Text1);
}

WIRE_COMMAND(CCmdTelvaInfoRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdTelvaInfoResponse)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Text1, r.m_Text2);
}
