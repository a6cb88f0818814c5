#include "backends/occt/step/value.h"

#include <gtest/gtest.h>

namespace {

using occt::step::parseParameters;
using occt::step::Record;
using occt::step::Value;
using Kind = Value::Kind;

std::optional<std::vector<Value>> parse(const std::string& text) {
    std::size_t at = 0;
    return parseParameters(text, at);
}

TEST(StepValue, ParametersOfEachKind) {
    const auto values =
        parse("( $ , * , #12,42,-1.5E-3,'it''s',.UNSPECIFIED.,\"0F\",(1,(2)), LENGTH_MEASURE(2.))");
    ASSERT_TRUE(values);
    ASSERT_EQ(values->size(), 10U);
    const auto& v = *values;
    EXPECT_EQ(v[0].kind, Kind::Missing);
    EXPECT_EQ(v[1].kind, Kind::Derived);
    EXPECT_EQ(v[2].kind, Kind::Reference);
    EXPECT_EQ(v[2].reference, 12U);
    EXPECT_TRUE(v[3].isInteger);
    EXPECT_EQ(v[3].number, 42.0);
    EXPECT_FALSE(v[4].isInteger);
    EXPECT_EQ(v[4].number, -1.5e-3);
    EXPECT_EQ(v[5].text, "it's");
    EXPECT_EQ(v[6].kind, Kind::Word);
    EXPECT_EQ(v[6].text, "UNSPECIFIED");
    EXPECT_EQ(v[7].text, "0F");
    ASSERT_TRUE(v[8].isList());
    EXPECT_EQ(v[8].items[1].items[0].number, 2.0);
    EXPECT_EQ(v[9].kind, Kind::Typed);
    EXPECT_EQ(v[9].text, "LENGTH_MEASURE");
    EXPECT_EQ(v[9].items[0].number, 2.0);
}

TEST(StepValue, ReadingEndsBehindTheClosingParenthesis) {
    std::size_t at = 1;
    ASSERT_TRUE(parseParameters("x(1,2);", at));
    EXPECT_EQ(at, 6U);
}

TEST(StepValue, NumbersAsWritersWriteThem) {
    const auto values = parse("(1.,+2,.5,1.E2,3e+1,-0.,1.E-400)");
    ASSERT_TRUE(values);
    const double expected[] = {1, 2, 0.5, 100, 30, 0, 0};
    ASSERT_EQ(values->size(), std::size(expected));
    for (std::size_t i = 0; i < values->size(); ++i) EXPECT_EQ((*values)[i].number, expected[i]);
    EXPECT_TRUE((*values)[1].isInteger);
    EXPECT_FALSE((*values)[0].isInteger);
}

TEST(StepValue, BlanksAndCommentsAnywhere) {
    const auto values = parse("(/* ) */ 1 /*,*/ ,\r\n\t'/*' )");
    ASSERT_TRUE(values);
    ASSERT_EQ(values->size(), 2U);
    EXPECT_EQ((*values)[1].text, "/*");
}

TEST(StepValue, EmptyLists) {
    const auto values = parse("((),( ))");
    ASSERT_TRUE(values);
    EXPECT_TRUE((*values)[0].isList());
    EXPECT_TRUE((*values)[1].items.empty());
    EXPECT_TRUE(parse("()")->empty());
}

TEST(StepValue, BrokenParametersAreNothing) {
    for (const char* text : {"",        "1",       "(",        "(1",     "(1,",
                             "(1,)",    "(,1)",    "(1 2)",    "('a)",   "(#)",
                             "(#x)",    "(.TRUE)", "(\"0F)",   "(NAME)", "(NAME(1)",
                             "(1.2.3)", "(1-2)",   "(1.E400)", "(+)",    "(#99999999999999999999)",
                             "(?)"}) {
        EXPECT_FALSE(parse(text)) << text;
    }
}

TEST(StepValue, DeepNestingIsRefusedInsteadOfRecursing) {
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '(') + "1" + std::string(depth, ')');
    };
    EXPECT_TRUE(parse(nested(100)));
    EXPECT_FALSE(parse(nested(300)));
    EXPECT_FALSE(parse(nested(200'000)));
    std::string typed;
    for (int i = 0; i < 100'000; ++i) typed += "A(";
    EXPECT_FALSE(parse("(" + typed));
}

TEST(StepValue, RecordsAnswerPastTheirEnd) {
    const Record record{"X", *parse("('name',#5,7)")};
    EXPECT_EQ(record.text(0), "name");
    EXPECT_EQ(record.reference(1), 5U);
    EXPECT_EQ(record.text(1), "");
    EXPECT_EQ(record.reference(0), 0U);
    EXPECT_EQ(record.at(99).kind, Kind::Missing);
    EXPECT_EQ(record.text(99), "");
    EXPECT_EQ(record.reference(99), 0U);
}

TEST(StepValue, ReferencesAreCollectedInOrderAtAnyDepth) {
    const auto values = parse("(#1,((#2),X(#3,(#4))),'#5',#1)");
    std::vector<std::uint64_t> found;
    for (const Value& value : *values) collectReferences(value, found);
    EXPECT_EQ(found, (std::vector<std::uint64_t>{1, 2, 3, 4, 1}));
}

}  // namespace
