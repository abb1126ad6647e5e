// Holds a row of records.def or messages.def to the class that it names. The error names the row.
#pragma once

#include "packaging/command_head.h"
#include "tools/class_info.h"

#include <type_traits>

namespace tools
{

// Whether the class has a form for one of the packagers, and a schema.
template <class T>
concept Travels = (Readable<T, CCmdPackager> || Readable<T, CDataPackager>)&&requires
{
    T::Wire();
};

// Whether the class can be read from the bytes that the envelope carries.
template <class Envelope, class T>
concept Carries = std::is_base_of_v<CCmdHead, Envelope> && requires(Envelope& envelope, T& message)
{
    message.Read(&envelope.m_PackData);
};

} // namespace tools

#define RECORD_ROW_HOLDS(Class)                                                                                        \
    static_assert(tools::Travels<Class>, "the row of " #Class " names a class without a wire interface");
#define MESSAGE_ROW_HOLDS(Envelope, Class)                                                                             \
    RECORD_ROW_HOLDS(Class)                                                                                            \
    static_assert(tools::Carries<Envelope, Class>,                                                                     \
                  "the row of " #Class " names " #Envelope ", which is not an envelope that carries it");
