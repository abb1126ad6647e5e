// Letters of the mail.
#include "playerdata/letter.h"

#include <gtest/gtest.h>

namespace
{

TEST(CLetter, HasNoIdYet)
{
    EXPECT_EQ(-1, CLetter().m_LetterId);
    EXPECT_FALSE(CLetter().m_Read);
}

} // namespace
