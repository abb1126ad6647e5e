// Payloads for the tests of messages, built value by value and truncated where needed.
#pragma once

#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace test
{

class Payload
{
public:
    template <class T>
    Payload& operator<<(const T& value)
    {
        if constexpr (std::is_class_v<T> && requires { value.Write(&m_Packager); })
            value.Write(&m_Packager);
        else if constexpr (std::is_convertible_v<T, const wchar_t*>)
            m_Packager.Write(zet::String_T<wchar_t>(value));
        else
            m_Packager.Write(value);
        return *this;
    }

    std::string bytes() const
    {
        return std::string(reinterpret_cast<const char*>(m_Packager.GetBuffer()),
                           static_cast<size_t>(m_Packager.GetDataSize()));
    }
    // The same without its last bytes.
    Payload cut(int last) const
    {
        Payload shorter;
        shorter.m_Packager.Write(m_Packager.GetBuffer(), m_Packager.GetDataSize() - last);
        return shorter;
    }
    int size() const { return m_Packager.GetDataSize(); }

    // The result of the object's Read for the payload.
    template <class T>
    bool into(T& object) const
    {
        CCmdPackager packager;
        packager.Write(m_Packager.GetBuffer(), m_Packager.GetDataSize());
        return object.Read(&packager);
    }

private:
    CCmdPackager m_Packager;
};

// The bytes that an object writes to one of the packagers.
template <class P = CCmdPackager, class T>
std::string written(const T& object)
{
    P packager;
    EXPECT_TRUE(object.Write(&packager));
    return std::string(reinterpret_cast<const char*>(packager.GetBuffer()),
                       static_cast<size_t>(packager.GetDataSize()));
}

} // namespace test
