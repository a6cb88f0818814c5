#include "backends/occt/step/checks.h"

#include <gtest/gtest.h>

#include "tests/support/step_builder.h"
#include "tests/unit/backends/occt/step/product_text.h"
#include "tests/unit/backends/occt/step/step_file.h"

namespace {

using HPS::Exchange::ImportCause;
using occt::step::Part21;
using occt::step::Products;
using occt::step::readProducts;
using step_test::kContexts;
using step_test::product;
using step_test::StepFile;
using step_test::usage;

std::string refusal(const std::string& text) {
    const Part21 file(text);
    auto cause = occt::step::refuseText(file, "/in/a.step");
    if (!cause) cause = occt::step::refuseStructure(readProducts(file), "/in/a.step");
    return cause ? cause->code + ": " + cause->text : std::string();
}

std::vector<std::string> gaps(const std::string& data) {
    const StepFile step(data);
    return occt::step::textGaps(step.file, readProducts(step.file));
}

TEST(StepChecks, SoundFilesAreNotRefused) {
    EXPECT_EQ(refusal(support::chainAssembly(3)), "");
    EXPECT_EQ(refusal(support::doublingAssembly(10)), "");
}

TEST(StepChecks, OtherTextIsNoStep) {
    EXPECT_EQ(refusal("solid cube\n"),
              "not-this-format: /in/a.step is no STEP file: it does not begin with ISO-10303-21.");
    EXPECT_EQ(refusal(""), refusal("solid cube\n"));
}

TEST(StepChecks, AFileWithoutDataIsDamaged) {
    EXPECT_EQ(refusal("ISO-10303-21;HEADER;ENDSEC;DATA;ENDSEC;END-ISO-10303-21;"),
              "damaged: /in/a.step is damaged: it holds no data.");
}

TEST(StepChecks, ParenthesesMayNestAHundredDeep) {
    const auto nested = [](std::size_t depth) {
        return StepFile("#1=A" + std::string(depth, '(') + std::string(depth, ')') + ";").text;
    };
    EXPECT_EQ(refusal(nested(100)), "");
    EXPECT_EQ(refusal(nested(101)),
              "damaged: /in/a.step is damaged: parentheses nest 101 deep; the limit is 100.");
}

TEST(StepChecks, AbsurdCoordinatesAreRefusedWithTheirLine) {
    EXPECT_EQ(refusal(StepFile("#1=A();\n#2=CARTESIAN_POINT('',(0.,1.E300,0.));").text),
              "damaged: /in/a.step is damaged: the coordinate 1.E300 in line 7 is not a length "
              "that can be.");
}

TEST(StepChecks, AnAssemblyThatContainsItselfIsRefusedWithItsPath) {
    EXPECT_EQ(refusal(support::cyclicAssembly(1, false)),
              "damaged: /in/a.step is damaged: an assembly contains itself (\"ring 0\" > \"ring "
              "0\").");
    const std::string three = refusal(support::cyclicAssembly(3, true));
    for (const char* name : {"\"ring 0\"", "\"ring 1\"", "\"ring 2\"", " > "}) {
        EXPECT_NE(three.find(name), std::string::npos) << three;
    }
    const std::string many = refusal(support::cyclicAssembly(50, false));
    EXPECT_NE(many.find("> ... > "), std::string::npos) << many;
    EXPECT_LT(many.size(), 250U);
}

TEST(StepChecks, FiveMillionOccurrencesAreTheLimit) {
    // 2^22 - 1 and 2^23 - 1 occurrences.
    EXPECT_EQ(refusal(support::doublingAssembly(21)), "");
    EXPECT_EQ(refusal(support::doublingAssembly(22)),
              "too-large: /in/a.step is too large: the assembly unfolds into 8388607 occurrences; "
              "the limit is 5000000.");
    const std::string endless = support::doublingAssembly(100);
    const auto cause = occt::step::refuseStructure(readProducts(Part21(endless)), "/in/a.step");
    ASSERT_TRUE(cause);
    EXPECT_EQ(cause->text,
              "/in/a.step is too large: the assembly unfolds into more than 4 x 10^18 occurrences; "
              "the limit is 5000000.");
}

TEST(StepChecks, SoundTextHasNoGaps) {
    EXPECT_TRUE(
        gaps(kContexts + product(10, "", "top") + product(20, "", "part") + usage(100, 10, 20, 1))
            .empty());
}

TEST(StepChecks, GapsOfTheTextAreToldWithTheirLines) {
    EXPECT_EQ(gaps("#1=A(\n;#2=A(#77,\n#78);"),
              (std::vector<std::string>{
                  "1 statement of the file could not be read, the first in line 6.",
                  "2 references lead to entities that the file does not hold, the first in line "
                  "7 to #77."}));
    EXPECT_EQ(gaps("#1=A(;#2=A(;#3=A(#9);").at(0),
              "2 statements of the file could not be read, the first in line 6.");
    EXPECT_EQ(gaps("#3=A(#9);").at(0),
              "1 reference leads to entities that the file does not hold, the first in line 6 to "
              "#9.");
}

TEST(StepChecks, ATextWithoutItsEndIsAGap) {
    const std::string text = "ISO-10303-21;DATA;#1=A();";
    const Part21 file(text);
    EXPECT_EQ(occt::step::textGaps(file, {}),
              (std::vector<std::string>{"The file ends before its last line."}));
}

TEST(StepChecks, RepeatedNumbersAreAGap) {
    EXPECT_EQ(gaps("#1=A();\n#1=A();"),
              (std::vector<std::string>{
                  "1 entity has the number of another one, the first in line 7: #1."}));
    EXPECT_EQ(gaps("#1=A();\n#1=A();#1=A();").at(0),
              "2 entities have the number of another one, the first in line 7: #1.");
}

TEST(StepChecks, UsagesThatCantBeReadAreCounted) {
    const std::string two = kContexts + product(10, "", "top") + product(20, "", "part");
    EXPECT_EQ(gaps(two + usage(100, 10, 20, 1) +
                   "#60=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','','',#12,#13,$);"),
              (std::vector<std::string>{"1 of 2 usages of products were translated."}));
    EXPECT_EQ(
        gaps(two + "#60=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','','',#12,#22,$);"),
        (std::vector<std::string>{"The placement of 1 usage of products could not be read."}));
}

}  // namespace
