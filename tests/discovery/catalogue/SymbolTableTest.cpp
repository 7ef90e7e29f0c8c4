#include "discovery/catalogue/SymbolTable.h"

#include <gtest/gtest.h>

#include <string>

using namespace tonequill;

TEST(SymbolTable, KeepsEachTextOnce)
{
    SymbolTable table;
    EXPECT_EQ(table.intern("a"), 0U);
    EXPECT_EQ(table.intern(""), 1U);
    EXPECT_EQ(table.intern("a"), 0U);
    EXPECT_EQ(table.intern({"a\0", 2}), 2U);
    EXPECT_EQ(table.size(), 3U);
    EXPECT_EQ(table.text(1), "");
    EXPECT_EQ(table.find("b"), SymbolTable::kNone);
    EXPECT_EQ(table.find(""), 1U);
}

TEST(SymbolTable, FindsEverythingAfterItHasGrown)
{
    SymbolTable table;
    for (std::uint32_t i = 0; i < 10000; ++i)
        EXPECT_EQ(table.intern(std::to_string(i)), i);
    for (std::uint32_t i = 0; i < 10000; ++i) {
        EXPECT_EQ(table.find(std::to_string(i)), i);
        EXPECT_EQ(table.text(i), std::to_string(i));
    }
}
