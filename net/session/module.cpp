#include "net/session/module.h"

namespace zet
{

Unknown::Handle_T<NetModule> NetModule::createInstance()
{
    return new NetModule;
}

} // namespace zet
