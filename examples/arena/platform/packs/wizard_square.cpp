// The wizard's wars and the world square: a player enters, takes part and leaves.
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"
#include "examples/arena/text.h"

namespace arena::platform
{

namespace
{

constexpr wchar_t kNoWar[] = L"left without a war";

class Wizard
{
public:
    bool install(host::Handlers& handlers)
    {
        numberWizard(m_Packs);
        serve<WizardPack_Login_Request, WizardPack_Login_Reply>(
            m_Packs,
            [this](Session& session, const WizardPack_Login_Request&, WizardPack_Login_Reply& reply)
            {
                if (!m_Wars.add(session, 0))
                    refuse(reply, kEnteredBefore);
            });
        // A war has no reply; one of a player that has not entered is dropped.
        serveSilently<WizardPack_GoWar_Request>(m_Packs,
                                                [this](Session& session, const WizardPack_GoWar_Request&)
                                                {
                                                    if (int* const wars = m_Wars.find(session))
                                                        ++*wars;
                                                });
        serve<WizardPack_Logout_Request, WizardPack_Logout_Reply>(
            m_Packs,
            [this](Session& session, const WizardPack_Logout_Request&, WizardPack_Logout_Reply& reply)
            {
                const int* const wars = m_Wars.find(session);
                if (!wars)
                    return refuse(reply, kNotEntered);
                if (*wars == 0)
                    refuse(reply, kNoWar);
                m_Wars.remove(session);
            });
        return m_Packs.install(handlers);
    }

private:
    WizardPacks m_Packs;
    Members<int> m_Wars;
};

class WorldSquare
{
public:
    bool install(host::Handlers& handlers)
    {
        numberWorldSquare(m_Packs);
        // A new player gets what the others have said about themselves.
        serve<WorldSquarePack_Login_Request, WorldSquarePack_Login_Reply>(
            m_Packs,
            [this](Session& session, const WorldSquarePack_Login_Request&, WorldSquarePack_Login_Reply& reply)
            {
                if (!m_Players.add(session, {}))
                    return refuse(reply, kEnteredBefore);
                m_Players.forEach(
                    [&](Session&, const WorldSquarePack_PlayerInfo& info)
                    {
                        if (!info.m_Text1.isEmpty())
                            m_Packs.send<CCmdWorldSquarePackReply>(session, info);
                    });
            });
        serve<WorldSquarePack_Logout_Request, WorldSquarePack_Logout_Reply>(
            m_Packs,
            [this](Session& session, const WorldSquarePack_Logout_Request&, WorldSquarePack_Logout_Reply& reply)
            {
                if (!m_Players.remove(session))
                    refuse(reply, kNotEntered);
            });
        // Everyone in the square gets what a player says, the player too, so that all see the same order. m_Text1 is
        // the player's name, whatever it claims.
        serveSilently<WorldSquarePack_PlayerInfo>(m_Packs,
                                                  [this](Session& session, const WorldSquarePack_PlayerInfo& claimed)
                                                  {
                                                      WorldSquarePack_PlayerInfo* const info = m_Players.find(session);
                                                      if (!info)
                                                          return;
                                                      info->m_Text1 = session.getAccount().m_Account.m_AccountName;
                                                      info->m_Text2 = claimed.m_Text2.getSubString(0, kTextLimit);
                                                      info->m_Text3 = claimed.m_Text3.getSubString(0, kTextLimit);
                                                      info->m_Text4 = claimed.m_Text4.getSubString(0, kTextLimit);
                                                      info->m_Text5 = claimed.m_Text5.getSubString(0, kTextLimit);
                                                      info->m_Text6 = claimed.m_Text6.getSubString(0, kTextLimit);
                                                      sendToAll(*info);
                                                  });
        serveSilently<WorldSquarePack_TransmisData>(m_Packs,
                                                    [this](Session& session, const WorldSquarePack_TransmisData& said)
                                                    {
                                                        if (!m_Players.find(session))
                                                            return;
                                                        WorldSquarePack_TransmisData data;
                                                        data.m_Text1 = session.getAccount().m_Account.m_AccountName +
                                                                       L"|" + said.m_Text1;
                                                        data.m_Text1 = data.m_Text1.getSubString(0, kTextLimit);
                                                        sendToAll(data);
                                                    });
        return m_Packs.install(handlers);
    }

private:
    template <class Message>
    void sendToAll(const Message& message)
    {
        m_Players.forEach([&](Session& other, const WorldSquarePack_PlayerInfo&)
                          { m_Packs.send<CCmdWorldSquarePackReply>(other, message); });
    }

    WorldSquarePacks m_Packs;
    Members<WorldSquarePack_PlayerInfo> m_Players;
};

} // namespace

Feature serveWizard(Platform& platform)
{
    auto wizard = std::make_shared<Wizard>();
    return wizard->install(platform.getHandlers()) ? wizard : nullptr;
}

Feature serveWorldSquare(Platform& platform)
{
    auto square = std::make_shared<WorldSquare>();
    return square->install(platform.getHandlers()) ? square : nullptr;
}

} // namespace arena::platform
