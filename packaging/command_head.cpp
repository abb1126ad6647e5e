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
    static const wire::Schema schema = []
    {
        wire::Schema head;
        head.name = "CCmdHead";
        const CCmdHead object(0);
        wire::Describer describer(head, &object);
        wire::Field version = wire::shapeOf<unsigned short>();
        version.type = "version";
        version.extent = kVersion;
        describer.push(std::move(version));
        describer.Fields("m_ClientIndex", object.m_ClientIndex);
        head.fields.back().head = true;
        return head;
    }();
    return schema;
}

namespace
{

// The two families are twins; their schemas are made alike.
template <class Family>
wire::Schema familySchema(const char* name)
{
    wire::Schema schema;
    schema.name = name;
    const Family object(0);
    wire::Describer describer(schema, &object);
    describer.Head<CCmdHead>(object);
    describer.Fields("m_ClientAddress, m_AccountName", object.m_ClientAddress, object.m_AccountName);
    for (wire::Field& field : schema.fields)
        field.head = true;
    return schema;
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
    static const wire::Schema schema = familySchema<CCmdPlatform>("CCmdPlatform");
    return schema;
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
    static const wire::Schema schema = familySchema<CCmdSystem>("CCmdSystem");
    return schema;
}
