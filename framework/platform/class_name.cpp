#include "framework/platform/class_name.h"

#include "framework/string_helper.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

namespace zet::platform
{

String_T<wchar_t> getClassName(const std::type_info& type)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                      std::free);
    return StringHelper::utf8ToWide(name ? name.get() : type.name());
}

} // namespace zet::platform
