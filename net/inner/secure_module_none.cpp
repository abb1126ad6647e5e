// The library that was built without TLS and connections over UDP.
#include "net/inner/secure_module.h"

namespace zet::inner
{

SecureModule* SecureModule::get()
{
    return nullptr;
}

} // namespace zet::inner
