#include "apps/cli/table.h"

#include <gtest/gtest.h>

namespace {

using cli::Paint;
using cli::Table;

TEST(CliTable, ColumnsAreAsWideAsTheirWidestCell) {
    Table table(20);
    table.add({{"a"}, {"b"}, {"c"}});
    table.add({{"long"}, {""}, {"d"}});
    EXPECT_EQ(table.text(false),
              "  a     b  c\n"
              "  long     d\n");
}

TEST(CliTable, WideAndCombiningCharactersKeepTheColumnsStraight) {
    Table table(20);
    table.add({{"\xe9\xbd\xbf\xe8\xbd\xae"}, {"x"}});  // four columns
    table.add({{"e\xcc\x81"}, {"x"}});                 // one column
    EXPECT_EQ(table.text(false),
              "  \xe9\xbd\xbf\xe8\xbd\xae  x\n"
              "  e\xcc\x81     x\n");
}

TEST(CliTable, CellPastTheLimitPushesItsOwnLineOnly) {
    Table table(4);
    table.add({{"abc"}, {"x"}, {"y"}});
    table.add({{"abcdefgh"}, {"x"}, {"y"}});
    EXPECT_EQ(table.text(false),
              "  abc  x  y\n"
              "  abcdefgh  x  y\n");
}

TEST(CliTable, CellsKeepTheGapEvenWhenOneBlankWouldBeLeft) {
    Table table(4);
    table.add({{"ab"}, {"x"}});
    table.add({{"abcde"}, {"x"}});
    EXPECT_EQ(table.text(false),
              "  ab  x\n"
              "  abcde  x\n");
}

TEST(CliTable, LinesEndWithoutBlanks) {
    Table table(20);
    table.add({{"wide cell"}, {"", Paint::Green}});
    table.add({{""}, {"second"}});
    EXPECT_EQ(table.text(true),
              "  wide cell\n"
              "             second\n");
}

TEST(CliTable, ColoursStandAroundTheTextAndOnlyWhenWanted) {
    Table table(20);
    table.add({{"new", Paint::Green}, {"plain"}});
    EXPECT_EQ(table.text(true), "  \x1b[32mnew\x1b[0m  plain\n");
    EXPECT_EQ(table.text(false), "  new  plain\n");
}

}  // namespace
