#include "backends/occt/step/part21.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/step_file.h"

namespace {

using occt::step::Instance;
using occt::step::Part21;
using occt::step::Record;
using step_test::StepFile;

TEST(Part21, FindsInstancesByNumberAndKeyword) {
    const StepFile step("#10=PRODUCT('a','b');\n#3 = POINT (1.);\n#7=PRODUCT('c','d');");
    const Part21& file = step.file;
    ASSERT_EQ(file.instances().size(), 3U);
    ASSERT_NE(file.find(3), nullptr);
    EXPECT_EQ(file.keyword(*file.find(3)), "POINT");
    EXPECT_EQ(file.find(4), nullptr);
    EXPECT_EQ(file.find(0), nullptr);
    EXPECT_EQ(file.ofType("PRODUCT"), (std::vector<std::uint32_t>{0, 2}));
    EXPECT_TRUE(file.ofType("NONE_SUCH").empty());
    EXPECT_EQ(file.read(7, "PRODUCT")->text(1), "d");
    EXPECT_FALSE(file.read(7, "POINT"));
    EXPECT_FALSE(file.read(8, "PRODUCT"));
    EXPECT_TRUE(file.hasMagic());
    EXPECT_TRUE(file.hasEnd());
    EXPECT_EQ(file.brokenStatements(), 0U);
    EXPECT_EQ(file.danglingReferences(), 0U);
}

TEST(Part21, KeywordsInSmallLettersAreTheSame) {
    const StepFile step("#1=product('a');#2=Product('b');");
    EXPECT_EQ(step.file.ofType("PRODUCT").size(), 2U);
    EXPECT_EQ(step.file.read(1, "PRODUCT")->text(0), "a");
}

TEST(Part21, ComplexInstancesCountForEachOfTheirKeywords) {
    const StepFile step("#1=(A('x (y)')B() C(#1,(2)));\n#2=B();");
    const Instance& complex = *step.file.find(1);
    EXPECT_EQ(complex.type, Part21::kComplex);
    EXPECT_EQ(step.file.keyword(complex), "");
    EXPECT_EQ(step.file.ofType("A"), (std::vector<std::uint32_t>{0}));
    EXPECT_EQ(step.file.ofType("B"), (std::vector<std::uint32_t>{0, 1}));
    EXPECT_EQ(step.file.ofType("C"), (std::vector<std::uint32_t>{0}));
    const auto records = step.file.read(complex);
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].text(0), "x (y)");
    EXPECT_TRUE(records[1].values.empty());
    EXPECT_EQ(records[2].reference(0), 1U);
    EXPECT_EQ(step.file.read(1, "C")->at(1).items.size(), 1U);
}

TEST(Part21, TextsHideWhatLooksLikeGrammar) {
    const StepFile step("#1=A('it''s; #99 = B( /* ''x','\\X2\\0027\\X0\\');#2=B('');");
    EXPECT_EQ(step.file.instances().size(), 2U);
    EXPECT_EQ(step.file.brokenStatements(), 0U);
    EXPECT_EQ(step.file.danglingReferences(), 0U);
    const Record record = *step.file.read(1, "A");
    EXPECT_EQ(record.text(0), "it's; #99 = B( /* 'x");
    EXPECT_EQ(record.text(1), "'");
}

TEST(Part21, CommentsStandAnywhere) {
    const StepFile step(
        "/* #8=A(); it's */#1=/*x*/A/*y*/(/*;*/1/*)*/);\n"
        "#2=CARTESIAN_POINT('',(1./*one*/,/* NaN */2.,3.));");
    EXPECT_EQ(step.file.instances().size(), 2U);
    EXPECT_EQ(step.file.brokenStatements(), 0U);
    EXPECT_FALSE(step.file.absurdNumber());
    EXPECT_EQ(step.file.read(1, "A")->at(0).number, 1.0);
    EXPECT_EQ(step.file.read(2, "CARTESIAN_POINT")->at(1).items.size(), 3U);
}

TEST(Part21, CommentsInSkippedStatementsHideTheirQuotes) {
    const StepFile step("#1=A();\nENDSEC/* it's ; */;DATA;#2=A();");
    EXPECT_EQ(step.file.instances().size(), 2U);
    EXPECT_EQ(step.file.brokenStatements(), 0U);
}

TEST(Part21, HeaderRecordsAreKeptApart) {
    const Part21 file(
        "ISO-10303-21;HEADER;FILE_NAME('a','b');file_schema(('S'));ENDSEC;DATA;#1=A();ENDSEC;"
        "END-ISO-10303-21;");
    ASSERT_EQ(file.header().size(), 2U);
    EXPECT_EQ(file.header()[0].text(1), "b");
    EXPECT_EQ(file.header()[1].keyword, "FILE_SCHEMA");
    EXPECT_EQ(file.header()[1].at(0).items[0].text, "S");
    EXPECT_EQ(file.instances().size(), 1U);
}

TEST(Part21, SeveralDataSectionsAreOne) {
    const StepFile step("#1=A();ENDSEC;\nDATA('second',('X'));\n#2=A(#1);");
    EXPECT_EQ(step.file.instances().size(), 2U);
    EXPECT_EQ(step.file.brokenStatements(), 0U);
    EXPECT_EQ(step.file.danglingReferences(), 0U);
}

TEST(Part21, MissingSectionEndsLoseNothing) {
    const Part21 header("ISO-10303-21;HEADER;FILE_NAME('a');DATA;#1=A();END-ISO-10303-21;");
    EXPECT_EQ(header.instances().size(), 1U);
    EXPECT_TRUE(header.hasEnd());
    const Part21 data("ISO-10303-21;HEADER;ENDSEC;DATA;#1=A();END-ISO-10303-21;");
    EXPECT_EQ(data.instances().size(), 1U);
    EXPECT_EQ(data.brokenStatements(), 0U);
    EXPECT_TRUE(data.hasEnd());
}

TEST(Part21, WhatIsNoStepHasNoMagic) {
    for (const char* text : {"", " ", "hello", "ISO-10303-2", "<xml/>", "\xEF\xBB\xBF<x/>"}) {
        EXPECT_FALSE(Part21(text).hasMagic()) << text;
        EXPECT_TRUE(Part21(text).instances().empty());
    }
    EXPECT_TRUE(Part21("/* c */\n iso-10303-21;").hasMagic());
    EXPECT_FALSE(Part21("ISO-10303-21;").hasEnd());
}

TEST(Part21, BrokenStatementsAreCountedAndTheRestIsRead) {
    struct Row {
        const char* text;
        std::size_t broken;
        std::size_t instances;
    };
    const Row rows[] = {
        {"#=A();#2=A();", 1, 1},
        {"#1A();#2=A();", 1, 1},
        {"#1=;#2=A();", 1, 1},
        {"#1=A(;#2=A();", 1, 2},
        {"#1=A());#2=A();", 1, 2},
        {"#1=A()/x;#2=A();", 1, 2},
        {")();#2=A();", 1, 1},
        {"WHAT(1);#2=A();", 1, 1},
        {"#1=A()\n#2=A();#3=A();", 1, 2},
        {"#99999999999999999999=A();#2=A();", 1, 1},
    };
    for (const Row& row : rows) {
        const StepFile step(row.text);
        EXPECT_EQ(step.file.brokenStatements(), row.broken) << row.text;
        EXPECT_EQ(step.file.instances().size(), row.instances) << row.text;
        ASSERT_TRUE(step.file.firstBroken()) << row.text;
        EXPECT_EQ(step.file.line(step.file.firstBroken()->offset), 6U) << row.text;
    }
}

TEST(Part21, UnterminatedTextsEndWithTheFile) {
    const std::string text = "ISO-10303-21;HEADER;ENDSEC;DATA;#1=A('b);\n#2=C();\nENDSEC;\n";
    const Part21 file(text);
    EXPECT_EQ(file.brokenStatements(), 1U);
    EXPECT_EQ(file.instances().size(), 1U);
    EXPECT_FALSE(file.hasEnd());
    EXPECT_TRUE(file.read(*file.find(1)).empty());
    EXPECT_TRUE(Part21("ISO-10303-21;HEADER;F('x").brokenStatements() > 0);
    EXPECT_TRUE(Part21("ISO-10303-21;DATA;#1=A(/* never").brokenStatements() > 0);
    EXPECT_TRUE(Part21("ISO-10303-21;DATA;#1=A(\"0").brokenStatements() > 0);
}

TEST(Part21, EveryTruncationIsReadWithoutHarm) {
    const StepFile step(
        "#1=PRODUCT('a''b',#2,(1.E-3,.T.,\"0F\"));\n#2=(A(#1)B('\\X2\\00FC\\X0\\'));\n"
        "#3=CARTESIAN_POINT('',(0.,1.E+2,-3.));/* end */");
    for (std::size_t size = 0; size <= step.text.size(); ++size) {
        const Part21 file(std::string_view(step.text).substr(0, size));
        for (const Instance& instance : file.instances()) (void)file.read(instance);
        EXPECT_LE(file.instances().size(), 3U);
    }
}

TEST(Part21, RepeatedNumbersAreToldAndTheFirstIsFound) {
    const StepFile step("#1=A('first');\n#2=B();\n#1=A('second');\n#2=B();\n#1=A('third');");
    EXPECT_EQ(step.file.repeatedNumbers(), 3U);
    EXPECT_EQ(step.file.read(1, "A")->text(0), "first");
    ASSERT_TRUE(step.file.firstRepeated());
    EXPECT_EQ(step.file.firstRepeated()->text, "#1");
    EXPECT_EQ(step.file.line(step.file.firstRepeated()->offset), 8U);
    EXPECT_EQ(StepFile("#1=A();#2=A();").file.repeatedNumbers(), 0U);
}

TEST(Part21, DanglingReferencesAreCounted) {
    const StepFile step("#1=A(#2,#3);\n#2=A((#1,#77));\n#5=A(#,#99999999999999999999);");
    EXPECT_EQ(step.file.danglingReferences(), 4U);
    EXPECT_EQ(step.file.firstDangling()->text, "#3");
    EXPECT_EQ(step.file.line(step.file.firstDangling()->offset), 6U);
    // Numbers far apart are looked up another way.
    const StepFile sparse("#1=A(#900000000000);\n#900000000000=A(#1,#2);");
    EXPECT_EQ(sparse.file.danglingReferences(), 1U);
    EXPECT_EQ(sparse.file.firstDangling()->text, "#2");
}

TEST(Part21, DepthOfParentheses) {
    EXPECT_EQ(StepFile("#1=A();").file.depth(), 1U);
    EXPECT_EQ(StepFile("#1=A(1,(2,(3)),'((((');").file.depth(), 3U);
    const StepFile deep("#1=A" + std::string(200'000, '(') + std::string(200'000, ')') + ";");
    EXPECT_EQ(deep.file.depth(), 200'000U);
    EXPECT_TRUE(deep.file.read(*deep.file.find(1)).empty());
}

TEST(Part21, AbsurdCoordinatesAreFound) {
    const auto absurd = [](const std::string& number) {
        const StepFile step("#1=CARTESIAN_POINT('',(0.," + number + ",0.));");
        return step.file.absurdNumber() ? step.file.absurdNumber()->text : std::string();
    };
    for (const char* good :
         {"0.", "-1.5", "1.E3", "+2.", ".5", "1.E-300", "1.E-400", "9.9E11", "1", "$", "-0."}) {
        EXPECT_EQ(absurd(good), "") << good;
    }
    for (const char* bad :
         {"NaN", "nan", "INF", "1.E300", "-1.E13", "1.E400", "1000000000001000."}) {
        EXPECT_EQ(absurd(bad), bad);
    }
    // Other entities hold what they like.
    EXPECT_FALSE(StepFile("#1=LIMIT('',(1.E300,0.));").file.absurdNumber());
}

}  // namespace
