// A bad road between two network namespaces.
#pragma once

#include <string>

namespace impaired
{

// What the road does to each packet, in both directions alike.
struct Profile
{
    const char* m_Name;
    double m_LossPercent = 0;
    // One way, in milliseconds.
    double m_Delay = 0;
    // More or less than the delay, evenly, at most. Packets may overtake one another.
    double m_Jitter = 0;
    // Packets that are held back for m_HeldBack more.
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

// Two TUN devices, one in each namespace, and packets handed from one to the other as a profile says. The numbers of
// the generator begin with a seed, so that a road treats the n-th packet of a direction as it did in the last run.
class Link
{
public:
    // Namespaces by their names below /run/netns. Throws std::runtime_error where something is not to be had.
    Link(const std::string& first, const std::string& second, int number, const Profile& profile, unsigned long seed);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    // Hands packets over until the handle becomes readable or is closed by its other end.
    Counts run(int stop);

private:
    int m_Ends[2] = {-1, -1};
    Profile m_Profile;
    unsigned long m_Seed;
};

// The calling process goes over into a namespace.
void enterNamespace(const std::string& name);

} // namespace impaired
