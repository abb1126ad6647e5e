// The motion sensor's data about one player.
#pragma once

// The joints of one player.
struct Skeletons
{
    static constexpr int kJoints = 21;

    // A position, and whether it is known.
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
