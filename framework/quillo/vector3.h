// The engine's vector of three floats.
#pragma once

namespace Quillo
{

// Three floats: a plain value.
struct FVector3
{
    float m_X = 0.0f;
    float m_Y = 0.0f;
    float m_Z = 0.0f;

    FVector3() = default;
    // With these three values.
    FVector3(float x, float y, float z) : m_X(x), m_Y(y), m_Z(z) {}

    // Exact comparison of the floats.
    friend bool operator==(const FVector3& a, const FVector3& b)
    {
        return a.m_X == b.m_X && a.m_Y == b.m_Y && a.m_Z == b.m_Z;
    }
};

} // namespace Quillo
