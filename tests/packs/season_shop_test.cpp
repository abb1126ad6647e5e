// The shops of the sports meet and of the combat season have the same form: goods are appended, orders are replaced.
#include "packs/combat_bs4.h"
#include "packs/match4_shop.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;

struct SportsMeet
{
    using Good = Match4ShopGood;
    using Goods = Match4Pack_TicketGoodConfig_Reply;
    using Orders = Match4Pack_OrderRecord_Reply;
};
struct Combat
{
    using Good = CombatShopGood;
    using Goods = CombatPack_TicketGoodConfig_Reply;
    using Orders = CombatPack_OrderRecord_Reply;
};

template <class Season>
class SeasonShop : public testing::Test
{
protected:
    typename Season::Good good(int id, const wchar_t* text)
    {
        typename Season::Good made;
        made.m_GoodId = id;
        made.m_Text1 = text;
        made.m_Value3 = 100 + id;
        return made;
    }
};
using Seasons = testing::Types<SportsMeet, Combat>;
TYPED_TEST_SUITE(SeasonShop, Seasons);

TYPED_TEST(SeasonShop, DefaultGoodHasMinusOneInItsSecondNumberAlone)
{
    EXPECT_EQ(written(typename TypeParam::Good()), (Payload() << 0 << L"" << L"" << L"" << 0 << -1 << 0).bytes());
}

TYPED_TEST(SeasonShop, GoodsAreAddedToThoseThatTheObjectHolds)
{
    typename TypeParam::Goods reply;
    const Payload payload = Payload() << L"m" << 1 << this->good(1, L"a") << 1 << this->good(2, L"b");
    EXPECT_TRUE(payload.into(reply));
    EXPECT_TRUE(payload.into(reply));
    ASSERT_EQ(reply.m_Goods1.size(), 2u);
    ASSERT_EQ(reply.m_Goods2.size(), 2u);
    EXPECT_EQ(reply.m_Goods1[1].m_GoodId, 1);
    EXPECT_EQ(reply.m_Goods2[1].m_GoodId, 2);
}

TYPED_TEST(SeasonShop, AGoodCutShortKeepsTheRestOfTheOneBefore)
{
    typename TypeParam::Goods reply;
    EXPECT_TRUE((Payload() << L"m" << 2 << this->good(1, L"a") << 7).into(reply));
    ASSERT_EQ(reply.m_Goods1.size(), 2u);
    EXPECT_EQ(reply.m_Goods1[1].m_GoodId, 7);
    EXPECT_EQ(reply.m_Goods1[1].m_Text1, zet::String_T<wchar_t>(L"a"));
    EXPECT_EQ(reply.m_Goods1[1].m_Value3, 101);
}

TYPED_TEST(SeasonShop, TheLastGoodOfTheFirstListCarriesOverIntoTheSecond)
{
    typename TypeParam::Goods reply;
    EXPECT_TRUE((Payload() << L"m" << 1 << this->good(1, L"a") << 1 << 8).into(reply));
    ASSERT_EQ(reply.m_Goods2.size(), 1u);
    EXPECT_EQ(reply.m_Goods2[0].m_GoodId, 8);
    EXPECT_EQ(reply.m_Goods2[0].m_Text1, zet::String_T<wchar_t>(L"a"));
    EXPECT_EQ(reply.m_Goods2[0].m_Value3, 101);
}

TYPED_TEST(SeasonShop, EachReadingBeginsWithADefaultGood)
{
    typename TypeParam::Goods reply;
    EXPECT_TRUE((Payload() << L"m" << 1 << this->good(1, L"a") << 0).into(reply));
    EXPECT_TRUE((Payload() << L"m" << 1).into(reply));
    ASSERT_EQ(reply.m_Goods1.size(), 2u);
    EXPECT_EQ(reply.m_Goods1[1].m_GoodId, 0);
    EXPECT_EQ(reply.m_Goods1[1].m_Value2, -1);
}

TYPED_TEST(SeasonShop, GoodsAreDecidedByTheirText)
{
    typename TypeParam::Goods reply;
    EXPECT_TRUE((Payload() << L"m").into(reply));
    EXPECT_FALSE((Payload() << L"m").cut(1).into(reply));
}

TYPED_TEST(SeasonShop, AHostileCountCostsNoMoreThanThePayload)
{
    typename TypeParam::Goods reply;
    EXPECT_TRUE((Payload() << L"m" << 0x7FFFFFFF << this->good(1, L"a") << 0).into(reply));
    EXPECT_LE(reply.m_Goods1.size(), 10u);
}

TYPED_TEST(SeasonShop, OrdersAreReplacedAndNotTested)
{
    typename TypeParam::Orders reply;
    reply.m_Orders.resize(3);
    EXPECT_TRUE((Payload() << L"m" << 2 << CLetter()).into(reply));
    EXPECT_EQ(reply.m_Orders.size(), 2u);
    EXPECT_TRUE((Payload() << L"m").into(reply));
    EXPECT_TRUE(reply.m_Orders.empty());
    EXPECT_FALSE(Payload().into(reply));
}

TEST(BS4Pack, NoSeasonAndNoMatchAreMinusOne)
{
    EXPECT_EQ(written(BS4Pack_GameSeason_Reply()), (Payload() << -1).bytes());
    EXPECT_EQ(written(BS4Pack_MatchEnd_Notify()), (Payload() << -1 << 0).bytes());
}

} // namespace
