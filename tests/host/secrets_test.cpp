// Masking of each listed field: its text or number is gone, the sizes and all other fields stay.
#include "host/inner/secrets.h"

#include "commands/account_access.h"
#include "commands/account_binding.h"
#include "commands/billing.h"
#include "commands/game_zone.h"
#include "commands/login.h"
#include "commands/logs.h"
#include "commands/payment.h"
#include "commands/server_choice.h"
#include "commands/zone_tunnel.h"
#include "framework/memory_stream.h"
#include "packaging/cmd_packager.h"
#include "packs/envelope.h"
#include "packs/in_purchase.h"
#include "packs/query_tool_access.h"
#include "packs/social.h"
#include "tests/support/payload_maker.h"
#include "tools/class_table.h"
#include "tools/object_json.h"
#include "tools/reading.h"
#include "transport/net_message.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace
{

using Json = nlohmann::ordered_json;
using Bytes = std::vector<unsigned char>;
using host::inner::Carried;

// The listed fields by class.
std::map<std::string, std::set<std::string>> listed()
{
    std::map<std::string, std::set<std::string>> all;
#define SECRET(Class, member) all[#Class].insert(#member);
#include "host/inner/secrets.def"
#undef SECRET
    return all;
}

Bytes streamFrame(unsigned short id, const std::string& payload, bool hasAddresses = false)
{
    CCmdPackager packager;
    packager.SetCmdID(id);
    if (hasAddresses)
        packager.SetAddress({1, 2, 3, {}}, {4, 5, 6, {}});
    packager.Write(payload.data(), static_cast<int>(payload.size()));
    int size = 0;
    const unsigned char* const frame = packager.FrameInPlace(size);
    return Bytes(frame, frame + size);
}

std::string payloadOf(const Bytes& frame)
{
    CCmdPackager packager;
    packager.Receive(frame.data(), static_cast<int>(frame.size()));
    return {reinterpret_cast<const char*>(packager.GetBuffer()), static_cast<size_t>(packager.GetDataSize())};
}

Json fieldsOf(const tools::ClassInfo& info, const std::string& payload)
{
    const tools::Reading reading = tools::readOnly(info, tools::Form::kCmd, payload);
    EXPECT_TRUE(reading.m_Read && reading.m_Consumed == reading.m_Size) << info.m_Name;
    return tools::objectJson(info.m_Wire(), reading.m_Object.get());
}

// What a masked value is in JSON: as many asterisks as the text has characters, zeros for the bytes of a message.
Json masked(const std::string& member, const Json& value)
{
    if (member == "m_PackData" || member == "m_Id1")
        return std::string(value.get<std::string>().size(), '0');
    if (value.is_array())
    {
        Json all = Json::array();
        for (const Json& each : value)
            all.push_back(masked(member, each));
        return all;
    }
    if (!value.is_string())
        return 0;
    const std::string text = value;
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    return std::string(text.size() - static_cast<size_t>(std::count_if(text.begin(), text.end(), continues)), '*');
}

TEST(Secrets, EachListedFieldOfAnyPayloadIsMaskedAndNoOther)
{
    const auto all = listed();
    ASSERT_GT(all.size(), 30u);
    for (const auto& [name, members] : all)
    {
        const tools::ClassInfo* const info = tools::findClass(name);
        ASSERT_NE(info, nullptr) << name;
        for (unsigned seed = 0; seed < 4; ++seed)
        {
            const std::string payload = test::PayloadMaker(seed).make(info->m_Wire()).m_Bytes;
            Bytes frame = streamFrame(info->m_Id, payload, seed % 2 == 1);
            const size_t size = frame.size();
            EXPECT_TRUE(maskSecrets(Carried::kStreamFrame, frame)) << name;
            EXPECT_EQ(frame.size(), size);
            const Json before = fieldsOf(*info, payload);
            Json expected = before;
            for (const std::string& member : members)
            {
                std::string path = "/" + member;
                std::replace(path.begin(), path.end(), '.', '/');
                const Json::json_pointer place(path);
                expected[place] = masked(member, before[place]);
            }
            EXPECT_EQ(fieldsOf(*info, payloadOf(frame)).dump(), expected.dump()) << name << " " << seed;
        }
    }
}

TEST(Secrets, AClassThatSharesTheIdOfOneWithSecretsIsNotMasked)
{
    const auto all = listed();
    size_t count = 0;
    for (const tools::ClassInfo& info : tools::classTable())
    {
        const auto hasItsId = [&info](const auto& row) { return tools::findClass(row.first)->m_Id == info.m_Id; };
        if (all.contains(info.m_Name) || !info.m_Id || std::none_of(all.begin(), all.end(), hasItsId))
            continue;
        ++count;
        for (unsigned seed = 0; seed < 4; ++seed)
        {
            const std::string payload = test::PayloadMaker(seed).make(info.m_Wire()).m_Bytes;
            const Bytes frame = streamFrame(info.m_Id, payload, seed % 2 == 1);
            Bytes recorded = frame;
            EXPECT_FALSE(maskSecrets(Carried::kStreamFrame, recorded)) << info.m_Name;
            EXPECT_EQ(recorded, frame) << info.m_Name;
        }
    }
    EXPECT_EQ(count, 1u);
}

// Each class with its name in the families of accounts and payments has a row, or carries no text of its own.
TEST(Secrets, NoCommandOfAPasswordOrATokenIsForgotten)
{
    const auto all = listed();
    for (const tools::ClassInfo& info : tools::classTable())
    {
        const std::string name = info.m_Name;
        const bool isSecret =
            info.m_Family == tools::Family::kCommand &&
            (name.find("Password") != std::string::npos || name.find("PaytoKen") != std::string::npos ||
             (name.find("Login") != std::string::npos && name.find("Fail") == std::string::npos));
        if (!isSecret || name.find("Fail") != std::string::npos)
            continue;
        const auto& fields = info.m_Wire().fields;
        const bool hasSecret = std::any_of(
            fields.begin(), fields.end(),
            [](const wire::Field& field)
            { return !field.head && (field.kind == wire::Kind::kText || std::string_view(field.name) == "m_Id1"); });
        EXPECT_TRUE(!hasSecret || all.contains(name) || name == "CCmdHpwdLoginCancel") << name;
    }
}

// A count of units and the units: the form of a peer with two-byte characters.
TEST(Secrets, TextOfTheOtherWidthIsMaskedToo)
{
    CCmdLogin login;
    CCmdPackager packager;
    ASSERT_TRUE(login.Write(&packager));
    std::string payload(reinterpret_cast<const char*>(packager.GetBuffer()),
                        static_cast<size_t>(packager.GetDataSize()));
    // The five texts are empty.
    payload.resize(payload.size() - 5);
    const std::string secret("s\0e\0c\0", 6);
    const std::string padded = std::string("\x08", 1) + secret + std::string(10, '\0');
    const std::string texts[] = {std::string("\x03", 1) + secret, padded};
    for (const std::string& text : texts)
    {
        Bytes frame = streamFrame(command_id::CCmdLogin,
                                  payload + text + std::string(1, '\0') + text + text + std::string(1, '\0'));
        ASSERT_TRUE(maskSecrets(Carried::kStreamFrame, frame));
        const Json fields = fieldsOf(*tools::findClass("CCmdLogin"), payloadOf(frame));
        EXPECT_EQ(fields["m_Text1"], "***");
        EXPECT_EQ(fields["m_Text2"], "");
        EXPECT_EQ(fields["m_Text4"], "***");
        const std::string after = payloadOf(frame);
        EXPECT_EQ(after.find(secret), std::string::npos);
        EXPECT_EQ(after.size(), payload.size() + 3 * text.size() + 2);
    }
}

TEST(Secrets, APayloadThatItsClassDoesNotReadIsMaskedWhole)
{
    Bytes frame = streamFrame(command_id::CCmdLogin, "secret without a head");
    ASSERT_TRUE(maskSecrets(Carried::kStreamFrame, frame));
    EXPECT_EQ(payloadOf(frame), std::string(21, '\0'));
    // Other commands stay, also cut ones.
    const Bytes other = streamFrame(command_id::CCmdLoginFail, "any");
    for (size_t size = 0; size <= other.size(); ++size)
    {
        Bytes cut(other.begin(), other.begin() + static_cast<ptrdiff_t>(size));
        EXPECT_FALSE(maskSecrets(Carried::kStreamFrame, cut));
        EXPECT_TRUE(std::equal(cut.begin(), cut.end(), other.begin()));
    }
    Bytes none;
    EXPECT_FALSE(maskSecrets(Carried::kStreamFrame, none));
    EXPECT_FALSE(maskSecrets(Carried::kDatagramFrame, none));
    EXPECT_FALSE(maskSecrets(Carried::kNetMessage, none));
}

CCmdUpdatePassword someSecret()
{
    CCmdUpdatePassword update;
    update.m_Value1 = 9;
    update.m_Text1 = L"old secret";
    update.m_Text2 = L"new secret";
    return update;
}

constexpr const char* kSecretBytes = "s\0e\0c\0r\0e\0t\0";

bool hasSecret(const Bytes& bytes)
{
    const std::string secret(kSecretBytes, 12);
    return std::search(bytes.begin(), bytes.end(), secret.begin(), secret.end()) != bytes.end();
}

Bytes frameOf(const CCmdHead& command)
{
    CCmdPackager packager;
    EXPECT_TRUE(command.Write(&packager));
    int size = 0;
    const unsigned char* const frame = packager.FrameInPlace(size);
    return Bytes(frame, frame + size);
}

// A receiver of a cut frame gets no command, but its file has the bytes: all after the head are masked, wherever it
// ends.
TEST(Secrets, ACutFrameIsMaskedWhole)
{
    const Bytes frame = frameOf(someSecret());
    const auto head = static_cast<size_t>(CCmdPackager::kMinHeaderSize);
    for (size_t size = head + 1; size < frame.size(); ++size)
    {
        Bytes cut(frame.begin(), frame.begin() + static_cast<ptrdiff_t>(size));
        EXPECT_TRUE(maskSecrets(Carried::kStreamFrame, cut)) << size;
        ASSERT_EQ(cut.size(), size);
        EXPECT_TRUE(std::equal(cut.begin(), cut.begin() + static_cast<ptrdiff_t>(head), frame.begin()));
        EXPECT_TRUE(std::all_of(cut.begin() + static_cast<ptrdiff_t>(head), cut.end(),
                                [](unsigned char byte) { return byte == 0; }))
            << size;
    }
}

// Readers take the addresses of a datagram for its payload, so what they read is not what the sender wrote.
TEST(Secrets, ADatagramWithAddressesIsMaskedToItsEnd)
{
    for (const bool hasBoth : {false, true})
    {
        CCmdPackager packager;
        ASSERT_TRUE(someSecret().Write(&packager));
        packager.SetAddress({1, 2, 3, {}}, hasBoth ? zet::Uuid{4, 5, 6, {}} : zet::Uuid());
        Bytes datagram(1000);
        datagram.resize(static_cast<size_t>(packager.Pack(datagram.data(), 1000)));
        ASSERT_TRUE(hasSecret(datagram));
        EXPECT_TRUE(maskSecrets(Carried::kDatagramFrame, datagram));
        constexpr ptrdiff_t kHead = 4;
        EXPECT_TRUE(
            std::all_of(datagram.begin() + kHead, datagram.end(), [](unsigned char byte) { return byte == 0; }));
    }
}

// The message of an envelope by the numbers of its host, which a recording does not know.
template <class Envelope, class Message>
void expectMaskedIn(Message message)
{
    message.m_Text1 = L"secret";
    Envelope envelope;
    ASSERT_TRUE(message.Write(&envelope.m_PackData));
    const int size = envelope.m_PackData.GetDataSize();
    Bytes frame = frameOf(envelope);
    ASSERT_TRUE(hasSecret(frame));
    EXPECT_TRUE(maskSecrets(Carried::kStreamFrame, frame));
    EXPECT_FALSE(hasSecret(frame));
    const tools::ClassInfo& info = *tools::classesOfId(envelope.GetID()).front();
    EXPECT_EQ(fieldsOf(info, payloadOf(frame))["m_PackData"], std::string(2 * static_cast<size_t>(size), '0'));
}

TEST(Secrets, MessagesOfPacksAreMasked)
{
    expectMaskedIn<CCmdSocialReply>(CmdSocialCreateAccessTokenReply());
    expectMaskedIn<CCmdSocialRequest>(CmdSocialReleaseAPIRequest());
    expectMaskedIn<CCmdQueryToolRequest>(QT_Login_Request());
    expectMaskedIn<CCmdQueryToolReply>(QT_Login_Reply());
    expectMaskedIn<CCmdInPurchasePackRequest>(InPurchasePack_UseFCode_Request());
    expectMaskedIn<CCmdInPurchasePackReply>(InPurchasePack_CreateAndSaveFCode_Reply());
}

TEST(Secrets, TextsOfBillsAndPaymentsAreMasked)
{
    CCmdBillSuccess success;
    success.m_Text8 = L"secret";
    CCmdBillFail fail;
    fail.m_Text3 = L"secret";
    CCmdBillReusltNotify result;
    result.m_Text5 = L"secret";
    CCmdLogPay pay;
    pay.m_Text7 = L"secret";
    for (const CCmdHead* const command : {static_cast<const CCmdHead*>(&success), static_cast<const CCmdHead*>(&fail),
                                          static_cast<const CCmdHead*>(&result), static_cast<const CCmdHead*>(&pay)})
    {
        Bytes frame = frameOf(*command);
        ASSERT_TRUE(hasSecret(frame));
        EXPECT_TRUE(maskSecrets(Carried::kStreamFrame, frame));
        EXPECT_FALSE(hasSecret(frame));
        const tools::ClassInfo& info = *tools::classesOfId(command->GetID()).front();
        // The text is found: it becomes asterisks, and the rest stays.
        EXPECT_NE(fieldsOf(info, payloadOf(frame)).dump().find("\"******\""), std::string::npos);
    }
}

TEST(Secrets, ACommandInTunnelsIsMasked)
{
    CCmdUpdatePassword update = someSecret();
    CCmdGZ_serverToClient inner;
    ASSERT_TRUE(toCCmdGZ_serverToClient(&update, &inner));
    CCmdGZ_clientToServer outer;
    outer.m_Text1 = L"game server 1";
    ASSERT_TRUE(toCCmdGZ_clientToServer(&inner, &outer));
    CCmdPackager packager;
    ASSERT_TRUE(outer.Write(&packager));
    int size = 0;
    const unsigned char* const begin = packager.FrameInPlace(size);
    Bytes frame(begin, begin + size);
    ASSERT_TRUE(hasSecret(frame));
    ASSERT_TRUE(maskSecrets(Carried::kStreamFrame, frame));
    EXPECT_FALSE(hasSecret(frame));
    EXPECT_EQ(fieldsOf(*tools::findClass("CCmdGZ_clientToServer"), payloadOf(frame))["m_Text1"], "game server 1");
}

TEST(Secrets, DatagramFramesAndMessagesOfSessionsAreMasked)
{
    CCmdUpdatePassword update = someSecret();
    CCmdPackager packager;
    ASSERT_TRUE(update.Write(&packager));
    Bytes datagram(1000);
    datagram.resize(static_cast<size_t>(packager.Pack(datagram.data(), 1000)));
    ASSERT_TRUE(hasSecret(datagram));
    ASSERT_TRUE(maskSecrets(Carried::kDatagramFrame, datagram));
    EXPECT_FALSE(hasSecret(datagram));
    CCmdPackager back;
    ASSERT_EQ(back.Unpack(datagram.data(), static_cast<int>(datagram.size())), static_cast<int>(datagram.size()));
    CCmdUpdatePassword read;
    ASSERT_TRUE(read.Read(&back));
    EXPECT_EQ(read.m_Value1, 9);
    EXPECT_STREQ(read.m_Text2.getBuffer(), L"**********");

    const auto message = convertToNetMessage(&packager);
    message->fromAddress = {1, 2, 3, {}};
    message->targetAddress = {{4, 5, 6, {}}, {7, 8, 9, {}}};
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream output(store.get());
    ASSERT_TRUE(zet::Message::writeWhole(output, *message));
    Bytes packet(static_cast<size_t>(store->getSize()));
    store->read(packet.data(), store->getSize());
    ASSERT_TRUE(hasSecret(packet));
    ASSERT_TRUE(maskSecrets(Carried::kNetMessage, packet));
    EXPECT_FALSE(hasSecret(packet));
    zet::MemoryInput bytes(packet.data(), static_cast<int>(packet.size()));
    zet::InputStream stream(&bytes);
    const auto again = zet::Message::readWhole(stream).castTo<Msg_NetCommand>();
    ASSERT_TRUE(again);
    EXPECT_EQ(again->targetAddress.size(), 2u);
    EXPECT_EQ(again->data.getBufferSize(), message->data.getBufferSize());
}

} // namespace
