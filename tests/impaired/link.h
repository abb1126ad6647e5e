// An impaired network between two network namespaces.
#pragma once

#include <string>

namespace impaired
{

// The effects on each packet, the same in both directions.
struct Profile
{
    const char* m_Name;
    double m_LossPercent = 0;
    // One way, in milliseconds.
    double m_Delay = 0;
    // The maximum deviation from the delay, uniform. Packets may be reordered.
    double m_Jitter = 0;
    // Packets that are delayed by m_HeldBack more.
    double m_ReorderPercent = 0;
    double m_HeldBack = 0;
    double m_DuplicatePercent = 0;
};

struct Counts
{
    long m_Passed = 0;
    long m_Lost = 0;
    long m_Doubled = 0;
    long m_HeldBack = 0;
};

// The two ends of road number n are 10.77.n.1, in the first namespace, and 10.77.n.2.
std::string addressOf(int number, int end);

// Two TUN devices, one in each namespace, and packets passed from one to the other by a profile. The generator is
// seeded, so that the n-th packet of a direction is treated as in the last run.
class Link
{
public:
    // Namespaces by their names below /run/netns. Throws std::runtime_error if something is not available.
    Link(const std::string& first, const std::string& second, int number, const Profile& profile, unsigned long seed);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    // Passes packets on until the handle becomes readable or its other end is closed.
    Counts run(int stop);

private:
    int m_Ends[2] = {-1, -1};
    Profile m_Profile;
    unsigned long m_Seed;
};

// Moves the calling process into a namespace.
void enterNamespace(const std::string& name);

} // namespace impaired
