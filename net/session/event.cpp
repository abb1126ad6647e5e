#include "net/session/event.h"

namespace zet
{

namespace
{

template <class Kind>
Unknown* make()
{
    return new Kind;
}

const RtRegistration s_ConnectOk(Evt_NetConnectOk::kClassName, &make<Evt_NetConnectOk>);
const RtRegistration s_ConnectFail(Evt_NetConnectFail::kClassName, &make<Evt_NetConnectFail>);
const RtRegistration s_Closed(Evt_NetClosed::kClassName, &make<Evt_NetClosed>);
const RtRegistration s_Error(Evt_NetError::kClassName, &make<Evt_NetError>);
const RtRegistration s_Abort(Evt_NetAbort::kClassName, &make<Evt_NetAbort>);

} // namespace

} // namespace zet
