#include "tests/support/step_text.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/step_builder.h"
#include "tests/support/step_damage.h"

namespace {

constexpr const char* kSmall =
    "ISO-10303-21;\nHEADER;\nFILE_NAME('DATA;','');\nENDSEC;\nDATA;\n"
    "#1=PRODUCT('it''s','a;b /* no comment */','',(#2));\n"
    "/* #9=PRODUCT('hidden','','',()); */\n"
    "#2 = ( A(1.)\n  B('#7',#3) ) ;\n"
    "#3=PRODUCT_CONTEXT('#2',$,(*,.T.));\nENDSEC;\nEND-ISO-10303-21;\n";

}  // namespace

TEST(StepText, ReadsStringsCommentsAndComplexEntities) {
    const auto text = support::StepText::parse(kSmall);
    ASSERT_TRUE(text);
    ASSERT_EQ(text->entities.size(), 3U);
    EXPECT_EQ(text->count("PRODUCT"), 1U);
    EXPECT_EQ(text->count("A"), 1U);
    EXPECT_EQ(text->count("B"), 1U);
    EXPECT_EQ(support::entityParameters(text->entities[0].text),
              (std::vector<std::string>{"'it''s'", "'a;b /* no comment */'", "''", "(#2)"}));
    EXPECT_EQ(support::entityReferences(text->entities[1].text), std::vector<std::uint64_t>{3});
    EXPECT_TRUE(support::entityReferences(text->entities[2].text).empty());
    EXPECT_EQ(text->tail, "ENDSEC;\nEND-ISO-10303-21;\n");
}

TEST(StepText, RefusesWhatHasNoDataOrNeverEnds) {
    EXPECT_FALSE(support::StepText::parse(""));
    EXPECT_FALSE(support::StepText::parse("solid cube"));
    EXPECT_FALSE(support::StepText::parse("DATA;\n#1=A('"));
}

TEST(StepText, ShufflingKeepsTheGraphAndChangesEveryNumberAndTheOrder) {
    const auto text = support::StepText::parse(support::chainAssembly(5));
    ASSERT_TRUE(text);
    const auto other = support::renumberedAndShuffled(*text, 7);
    ASSERT_EQ(other.entities.size(), text->entities.size());
    EXPECT_NE(other.write(), text->write());
    EXPECT_EQ(other.write(), support::renumberedAndShuffled(*text, 7).write());
    const auto again = support::StepText::parse(other.write());
    ASSERT_TRUE(again);
    const auto names = [](const support::StepText& of) {
        std::vector<std::string> all;
        for (const auto& each : of.occurrences()) {
            all.push_back(std::to_string(each.depth) + " " + each.name);
        }
        return all;
    };
    EXPECT_EQ(names(*again), names(*text));
    EXPECT_EQ(names(*text).size(), 6U);
    for (const auto& entity : again->entities) {
        for (const auto number : support::entityReferences(entity.text)) {
            const auto found =
                std::find_if(again->entities.begin(), again->entities.end(),
                             [&](const auto& each) { return each.number == number; });
            EXPECT_NE(found, again->entities.end());
        }
    }
}

TEST(StepText, CountsTheOccurrencesOfAnAssemblyThatDoubles) {
    const auto text = support::StepText::parse(support::doublingAssembly(6));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->occurrences().size(), (1U << 7U) - 1);
    EXPECT_EQ(text->count("NEXT_ASSEMBLY_USAGE_OCCURRENCE"), 12U);
}

TEST(StepDamage, TheSameSeedSpoilsInTheSameWay) {
    const std::string good = support::chainAssembly(2);
    EXPECT_EQ(support::truncated(good, 30).size(), good.size() * 30 / 100);
    EXPECT_EQ(support::withFlippedBits(good, 8, 3), support::withFlippedBits(good, 8, 3));
    EXPECT_NE(support::withFlippedBits(good, 8, 3), support::withFlippedBits(good, 8, 4));
    const auto text = support::StepText::parse(good);
    ASSERT_TRUE(text);
    const std::string huge = support::withCoordinate(*text, "1.E300", 3, 1);
    EXPECT_NE(huge.find("(1.E300,"), std::string::npos);
    EXPECT_NE(support::withWrongReferences(*text, 5, 1), text->write());
}
