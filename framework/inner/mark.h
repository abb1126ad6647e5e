// A flag that is set while something runs and cleared however it ends.
#pragma once

namespace zet::inner
{

// Sets the flag during its lifetime.
class Mark
{
public:
    explicit Mark(bool& flag) : m_Flag(flag) { m_Flag = true; }
    ~Mark() { m_Flag = false; }
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;

private:
    bool& m_Flag;
};

} // namespace zet::inner
