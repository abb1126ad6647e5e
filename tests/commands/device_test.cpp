#include "commands/device.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

// Makes the two conversions accessible.
struct Sensor : CCmdSensorEvent
{
    using CCmdSensorEvent::convertByte2GSensor;
    using CCmdSensorEvent::convertGSensor2Byte;
};

} // namespace

TEST(SensorEvent, MiddleCodeMeansZero)
{
    const Sensor sensor;
    EXPECT_EQ(sensor.convertGSensor2Byte(0.0f), 128);
    EXPECT_EQ(sensor.convertByte2GSensor(128), 0.0f);
}

TEST(SensorEvent, ValuesBeyondTheScaleAreTheLowestCode)
{
    const Sensor sensor;
    for (float value : {4.0f, -4.0f, 100.0f, -100.0f, std::numeric_limits<float>::infinity(),
                        std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(sensor.convertGSensor2Byte(value), 0) << value;
}

TEST(SensorEvent, ValuesAreCutToTheCodeBelow)
{
    const Sensor sensor;
    EXPECT_EQ(sensor.convertGSensor2Byte(3.99f), 255);
    EXPECT_EQ(sensor.convertGSensor2Byte(-3.99f), 0);
    EXPECT_EQ(sensor.convertGSensor2Byte(-0.001f), 127);
    EXPECT_EQ(sensor.convertGSensor2Byte(std::nextafter(4.0f, 0.0f)), 255);
}

TEST(SensorEvent, EveryCodeComesBack)
{
    const Sensor sensor;
    EXPECT_EQ(sensor.convertByte2GSensor(255), 3.96875f);
    EXPECT_EQ(sensor.convertByte2GSensor(0), -4.0f);
    for (int code = 1; code < 256; ++code)
    {
        const unsigned char byte = static_cast<unsigned char>(code);
        EXPECT_EQ(sensor.convertGSensor2Byte(sensor.convertByte2GSensor(byte)), byte);
    }
}

TEST(SensorEvent, EachAxisHasItsOwnByte)
{
    CCmdSensorEvent event;
    EXPECT_EQ(event.getGSensorX(), -4.0f);
    event.initGSensorData(1.0f, -2.0f, 3.51f);
    EXPECT_EQ(event.getGSensorX(), 1.0f);
    EXPECT_EQ(event.getGSensorY(), -2.0f);
    EXPECT_EQ(event.getGSensorZ(), 3.5f);
    EXPECT_EQ(event.m_Byte1, 0);
}
