// The words for tables: columns, interleaved cells and rows, counts that are ballast.
#include "packaging/wire/order.h"
#include "tests/support/wire_bytes.h"

#include <gtest/gtest.h>

#include <vector>

using Ints = std::vector<int>;
using test::Bytes;
using test::number;
using test::operator+;
using test::Outcome;
using test::readInto;
using test::written;

struct SmallColumns
{
    SMALL_RECORD
    Ints m_Column1;
    std::vector<unsigned char> m_Column2;
};
WIRE_ORDER_CMD(SmallColumns)
{
    return COUNT_OF(r.m_Column1) && TABLE(wire::CountedRows, r.m_Column1, r.m_Column2);
}

struct SmallTables
{
    SMALL_RECORD
    unsigned char m_Wide[2][3] = {{1, 2, 3}, {4, 5, 6}};
    unsigned char m_Narrow[2][1] = {{7}, {8}};
};
WIRE_ORDER_CMD(SmallTables)
{
    return TABLE(wire::SaidRows(2, 3), r.m_Wide, r.m_Narrow);
}

struct SmallRows
{
    SMALL_RECORD
    int m_One[2] = {1, 2};
    int m_Two[2] = {3, 4};
};
WIRE_ORDER_CMD(SmallRows)
{
    return TABLE(wire::SaidRows(2), r.m_One, r.m_Two);
}

struct SmallBallast
{
    SMALL_RECORD
    int m_Table[2] = {1, 2};
};
WIRE_ORDER_CMD(SmallBallast)
{
    return TABLE(wire::OwnRows, r.m_Table);
}

namespace
{

TEST(WireTables, ColumnsAreWrittenRowByRowAndReadWithOneLength)
{
    SmallColumns record;
    record.m_Column1 = {1, 2};
    record.m_Column2 = {7};
    EXPECT_EQ(written(record), number(2) + number(1) + Bytes{7} + number(2) + Bytes{0});
    SmallColumns back;
    back.m_Column2 = {1, 2, 3};
    EXPECT_TRUE(readInto(back, number(2) + number(5) + Bytes{6}).m_Read);
    EXPECT_EQ(back.m_Column1, (Ints{5, 0}));
    EXPECT_EQ(back.m_Column2, (std::vector<unsigned char>{6, 0}));
}

TEST(WireTables, TablesInterleaveCellByCell)
{
    SmallTables record;
    const Bytes bytes = number(2) + number(3) + Bytes{1, 7, 2, 3, 4, 8, 5, 6};
    EXPECT_EQ(written(record), bytes);
    SmallTables back;
    back.m_Wide[1][2] = 0;
    EXPECT_TRUE(readInto(back, bytes).m_Read);
    EXPECT_EQ(back.m_Wide[1][2], 6);
}

TEST(WireTables, CellsBeyondTheTablesAreReadAndDropped)
{
    SmallTables record;
    EXPECT_EQ(readInto(record, number(3) + number(4) + Bytes(15, 9)), (Outcome{true, 8 + 15}));
    EXPECT_EQ(record.m_Wide[1][2], 9);
    EXPECT_EQ(record.m_Narrow[1][0], 9);
}

TEST(WireTables, RowsInterleaveAfterOneCount)
{
    SmallRows record;
    EXPECT_EQ(written(record), number(2) + number(1) + number(3) + number(2) + number(4));
    SmallRows back;
    EXPECT_EQ(readInto(back, number(3) + number(5) + number(6) + number(7) + number(8) + number(9) + number(9)),
              (Outcome{true, 28}));
    EXPECT_EQ(back.m_One[1], 7);
    EXPECT_EQ(back.m_Two[1], 8);
}

TEST(WireTables, BallastCountIsReadAndIgnored)
{
    SmallBallast record;
    EXPECT_EQ(written(record), number(2) + number(1) + number(2));
    EXPECT_EQ(readInto(record, number(99) + number(5) + number(6)), (Outcome{true, 12}));
    EXPECT_EQ(record.m_Table[1], 6);
}

TEST(WireTables, HostileCountsBoundMemoryAndTimeByTheBytesThatAreThere)
{
    SmallTables tables;
    EXPECT_TRUE(readInto(tables, number(0x7FFFFFFF) + number(0x7FFFFFFF) + Bytes(20, 1)).m_Read);
    SmallColumns columns;
    EXPECT_TRUE(readInto(columns, number(0x7FFFFFFF) + Bytes(10, 1)).m_Read);
    EXPECT_EQ(columns.m_Column1.size(), 3u);
}

} // namespace
