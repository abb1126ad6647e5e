#include "playerdata/account.h"

zet::Unknown::Handle_T<CAccount> CAccount::createInstance()
{
    return zet::Unknown::Handle_T<CAccount>(new CAccount());
}

zet::Unknown::Handle_T<CAccount> CAccount::createInstance(const zet::Uuid& id)
{
    return zet::Unknown::Handle_T<CAccount>(new CAccount(id));
}

const wchar_t* CAccount::getClassTimestamp() const
{
    return L"Wed Feb 19 16:11:25 2020";
}
