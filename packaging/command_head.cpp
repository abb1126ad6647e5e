#include "packaging/command_head.h"

#include "packaging/cmd_packager.h"
#include "packaging/inner/socket_seam.h"
#include "packaging/wire/order.h"

void CCmdHead::SetClientAddress(const zet::Uuid&) {}

void CCmdHead::SetAccountName(const zet::String_T<wchar_t>&) {}

zet::Uuid CCmdHead::GetClientAddress()
{
    return zet::Uuid();
}

zet::String_T<wchar_t> CCmdHead::GetAccountName()
{
    return zet::String_T<wchar_t>();
}

void CCmdHead::OutDebug(FILE*) const {}

bool CCmdHead::Write(CCmdPackager* pk) const
{
    return wire::writeHead(*pk, *this);
}

bool CCmdHead::Read(CCmdPackager* pk)
{
    return wire::readHead(*pk, *this);
}

bool CCmdHead::Send(CCommandSocket* socket) const
{
    return socket && SendCommand(socket, *this);
}

const wire::Schema& CCmdHead::Wire()
{
    static constinit wire::LazySchema schema;
    return schema.get("CCmdHead",
                      [](wire::Describer& describer)
                      {
                          const CCmdHead head(0);
                          wire::Field version;
                          wire::shapeOf<unsigned short>(version);
                          version.type = "version";
                          version.extent = kVersion;
                          describer.addOne(std::move(version));
                          describer.of(&head).Fields("m_ClientIndex", head.m_ClientIndex);
                          describer.showFirst();
                      });
}

namespace
{

// The two families have the same fields.
template <class Family>
void describeFamily(wire::Describer& describer)
{
    const Family head(0);
    describer.of(&head).Head(static_cast<const CCmdHead&>(head));
    describer.Fields("m_ClientAddress, m_AccountName", head.m_ClientAddress, head.m_AccountName);
    describer.showFirst();
}

} // namespace

bool CCmdPlatform::Write(CCmdPackager* pk) const
{
    return wire::writeHead(*pk, *this);
}

bool CCmdPlatform::Read(CCmdPackager* pk)
{
    return wire::readHead(*pk, *this);
}

const wire::Schema& CCmdPlatform::Wire()
{
    static constinit wire::LazySchema schema;
    return schema.get("CCmdPlatform", &describeFamily<CCmdPlatform>);
}

bool CCmdSystem::Write(CCmdPackager* pk) const
{
    return wire::writeHead(*pk, *this);
}

bool CCmdSystem::Read(CCmdPackager* pk)
{
    return wire::readHead(*pk, *this);
}

const wire::Schema& CCmdSystem::Wire()
{
    static constinit wire::LazySchema schema;
    return schema.get("CCmdSystem", &describeFamily<CCmdSystem>);
}
