// What a writer and a reader have in common: fields in order. A writer takes its values const, which is how the two
// directions are told apart here.
#pragma once

#include "packaging/wire/head_form.h"
#include "packaging/wire/visit.h"

#include <array>

namespace wire
{

// The place of a field in a run of fixed-size fields, and the bytes of the run at its first field.
struct Place
{
    int runBytes = 0;
    int offset = -1;
};

// Finds the runs of fixed-size fields, so that one check of the space serves a whole run.
template <class... T>
constexpr std::array<Place, sizeof...(T)> placesOf()
{
    constexpr int sizes[] = {kFixedSize<T>...};
    std::array<Place, sizeof...(T)> places{};
    size_t first = 0;
    for (size_t i = 0; i < sizeof...(T); ++i)
    {
        if (sizes[i] == 0)
        {
            first = i + 1;
            continue;
        }
        places[i].offset = i == first ? 0 : places[i - 1].offset + sizes[i - 1];
        places[first].runBytes += sizes[i];
    }
    return places;
}

template <class P>
class Codec
{
public:
    explicit Codec(P& packager) : m_Packager(packager), m_SizeBefore(packager.GetDataSize()) {}

    // Fields in order, up to the first that fails; what was read by then stays.
    template <class... T>
    bool Fields(const char*, T&... values)
    {
        return fields(std::index_sequence_for<T...>(), values...);
    }
    // Every field is tried, and none decides; one that cannot be read keeps its value.
    template <class... T>
    bool UntestedFields(const char*, T&... values)
    {
        (everyElement(values), ...);
        return true;
    }
    template <class... T>
    bool NotSent(const char*, T&...)
    {
        return true;
    }
    template <class Steps>
    bool Marked(const char*, Steps steps)
    {
        return steps();
    }
    template <class Base, class R>
    bool Head(R& record)
    {
        std::conditional_t<std::is_const_v<R>, const Base, Base>& base = record;
        if constexpr (kIsHead<Base> && std::is_const_v<R>)
            return writeHead(m_Packager, base);
        else if constexpr (kIsHead<Base>)
            return readHead(m_Packager, base);
        else if constexpr (std::is_const_v<R>)
            return base.Base::Write(&m_Packager);
        else
            return base.Base::Read(&m_Packager);
    }

    P& packager() { return m_Packager; }

    // One value of any type that can be in an order.
    template <class T>
    bool one(T& value)
    {
        using Value = std::remove_const_t<T>;
        if constexpr (!isField<std::remove_all_extents_t<Value>>())
        {
            return false;
        }
        else if constexpr (std::is_array_v<Value> && !kIsRawBytes<Value>)
        {
            for (auto& element : value)
                if (!one(element))
                    return false;
            return true;
        }
        else if constexpr (kIsA<std::pair, Value>)
        {
            return one(value.first) && one(value.second);
        }
        else if constexpr (kIsPackager<Value>)
        {
            return payload(value);
        }
        else if constexpr (Record<Value>)
        {
            if constexpr (std::is_const_v<T>)
                return value.Write(&m_Packager);
            else
                return value.Read(&m_Packager);
        }
        else if constexpr (std::is_const_v<T>)
        {
            return writeValue(m_Packager, value);
        }
        else
        {
            return readValue(m_Packager, &value);
        }
    }

protected:
    P& m_Packager;

private:
    template <size_t... I, class... T>
    bool fields(std::index_sequence<I...>, T&... values)
    {
        [[maybe_unused]] static constexpr auto places = placesOf<std::remove_const_t<T>...>();
        using Byte = std::conditional_t<(std::is_const_v<T> && ...), unsigned char, const unsigned char>;
        [[maybe_unused]] Byte* run = nullptr;
        return (field<places[I].runBytes, places[I].offset>(run, values) && ...);
    }
    // The first of a run looks for the space or the bytes of all; where they are not there, each field looks for its
    // own.
    template <int RunBytes, int Offset, class Byte, class T>
    bool field(Byte*& run, T& value)
    {
        if constexpr (Offset < 0 || !kHasFastPaths)
        {
            return one(value);
        }
        else
        {
            if constexpr (RunBytes != 0 && std::is_const_v<T>)
            {
                run = Access::freeSpace(m_Packager, RunBytes);
                if (run)
                    Access::wrote(m_Packager, RunBytes);
            }
            else if constexpr (RunBytes != 0)
            {
                run = Access::next(m_Packager, RunBytes);
                if (run)
                    Access::took(m_Packager, RunBytes);
            }
            if (!run)
                return one(value);
            if constexpr (std::is_const_v<T>)
                store(run + Offset, value);
            else
                load(run + Offset, value);
            return true;
        }
    }
    template <class T>
    void everyElement(T& value)
    {
        if constexpr (std::is_array_v<T>)
            for (auto& element : value)
                everyElement(element);
        else
            one(value);
    }

    // All bytes that the inner packager holds, wherever its read pointer is. A class that is written into its own inner
    // packager takes along what that held before.
    template <class Inner>
    bool payload(const Inner& inner)
    {
        int size = inner.GetDataSize();
        if constexpr (std::is_same_v<Inner, P>)
            size = &inner == &m_Packager ? m_SizeBefore : size;
        return writeScalar(m_Packager, size) && writeBytes(m_Packager, inner.GetBuffer(), size);
    }
    // The bytes go straight from one packager into the other, after what that holds. A size that no packager has space
    // for is logged; one that the payload does not have is refused without a log line.
    template <class Inner>
    bool payload(Inner& inner)
    {
        int size = 0;
        if (!readScalar(m_Packager, &size) || size < 0)
            return false;
        if (size > CCmdPackager::kMaxDataSize)
            return m_Packager.Alloc(size);
        const unsigned char* bytes = Access::next(m_Packager, size);
        if (!bytes)
            return false;
        Access::took(m_Packager, size);
        return inner.Write(bytes, size);
    }

    const int m_SizeBefore;
};

} // namespace wire
