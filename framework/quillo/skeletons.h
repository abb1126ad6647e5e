// The motion sensor's data about one player.
#pragma once

struct Skeletons
{
    static constexpr int kJoints = 21;

    struct Joint
    {
        float m_X = 0.0f;
        float m_Y = 0.0f;
        float m_Z = 0.0f;
        // Whether the sensor sees the joint.
        bool m_State = false;
    };

    Joint m_Joints[kJoints];
};
