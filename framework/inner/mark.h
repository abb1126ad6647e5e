// A mark that something runs, which nothing that ends it can leave behind.
#pragma once

namespace zet::inner
{

// Sets the flag while it lives.
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
