#include "extract/naming.h"

#include <gtest/gtest.h>

#include "platform/hps/exception.h"
#include "tests/support/memory_model.h"

namespace {

using support::occurrence;

HPS::Component componentOf(const support::ComponentShape& shape) {
    return support::makeModel({shape}).GetSubcomponents()[0];
}

TEST(FileStem, IsTheFileNameWithoutFolderAndExtension) {
    const auto shape = occurrence("x").with("Filename", std::string("C:\\models\\gear.box.prt"));
    EXPECT_EQ(extract::GetFileStem(componentOf(shape)), L"gear.box");
}

TEST(FileStem, TakesTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(extract::StemOfPath(L"C:\\a/b\\c/gear.prt"), L"gear");
    EXPECT_EQ(extract::StemOfPath(L"a/b\\gear.prt"), L"gear");
    EXPECT_EQ(extract::StemOfPath(L"gear.prt"), L"gear");
}

TEST(FileStem, OfAPathThatEndsInASeparatorIsEmpty) {
    EXPECT_EQ(extract::StemOfPath(L"C:\\models\\"), L"");
    EXPECT_EQ(extract::StemOfPath(L"models/"), L"");
    EXPECT_EQ(extract::StemOfPath(L""), L"");
}

TEST(FileStem, KeepsANameThatBeginsWithItsOnlyDot) {
    EXPECT_EQ(extract::StemOfPath(L"/home/u/.hidden"), L".hidden");
    EXPECT_EQ(extract::StemOfPath(L".hidden"), L".hidden");
    EXPECT_EQ(extract::StemOfPath(L".hidden.prt"), L".hidden");
    EXPECT_EQ(extract::StemOfPath(L"."), L".");
}

TEST(FileStem, CutsAtTheLastDotOnly) {
    EXPECT_EQ(extract::StemOfPath(L"a.b.c"), L"a.b");
    EXPECT_EQ(extract::StemOfPath(L"a."), L"a");
    EXPECT_EQ(extract::StemOfPath(L"folder.d/name"), L"name");
}

TEST(FileStem, IsEmptyWithoutTheMetadata) {
    EXPECT_EQ(extract::GetFileStem(componentOf(occurrence("x"))), L"");
    const auto other = occurrence("x").with("filename", std::string("gear.prt"));
    EXPECT_EQ(extract::GetFileStem(componentOf(other)), L"");
}

TEST(FileStem, IsEmptyForAnEmptyText) {
    const auto shape = occurrence("x").with("Filename", std::string());
    EXPECT_EQ(extract::GetFileStem(componentOf(shape)), L"");
}

TEST(FileStem, IsEmptyForMetadataThatIsNoText) {
    EXPECT_EQ(extract::GetFileStem(componentOf(occurrence("x").with("Filename", 1.5))), L"");
}

TEST(FileStem, SurvivesAnythingThrown) {
    class Throwing : public support::MemoryModel {
    public:
        std::vector<std::shared_ptr<const HPS::MetadataValue>> metadata(
            HPS::ComponentId id) const override {
            if (id == 0) throw HPS::Exception("unreadable");
            throw 42;
        }
    };
    const auto model = std::make_shared<const Throwing>();
    EXPECT_EQ(extract::GetFileStem(HPS::Component(model, 0)), L"");
    EXPECT_EQ(extract::GetFileStem(HPS::Component(model, 1)), L"");
    EXPECT_EQ(extract::GetFileStem(HPS::Component()), L"");
}

struct SuffixCase {
    const wchar_t* text;
    const wchar_t* expected;
};
class InstanceSuffix : public testing::TestWithParam<SuffixCase> {};

TEST_P(InstanceSuffix, IsCut) {
    EXPECT_EQ(extract::StripInstanceSuffix(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Naming, InstanceSuffix,
    testing::Values(SuffixCase{L"Bolt (2)", L"Bolt"}, SuffixCase{L"Bolt", L"Bolt"},
                    SuffixCase{L"Bolt (2) (3)", L"Bolt"}, SuffixCase{L"(1)", L"(1)"},
                    SuffixCase{L" \t(1)", L" \t(1)"}, SuffixCase{L" \t\r\nBolt\r\n\t ", L"Bolt"},
                    SuffixCase{L"Big  Bolt(2", L"Big  Bolt"}, SuffixCase{L"", L""},
                    SuffixCase{L"   ", L"   "}, SuffixCase{L"BOLT M8", L"BOLT M8"},
                    SuffixCase{L"\u00A0Bolt", L"\u00A0Bolt"}));

TEST(ReadName, WidensUtf8) {
    EXPECT_EQ(extract::ReadName(componentOf(occurrence("Z\xC3\xBCndspule"))), L"Z\u00FCndspule");
    EXPECT_EQ(extract::ReadName(componentOf(occurrence(""))), L"");
}

TEST(ReadName, EndsAtAZero) {
    EXPECT_EQ(extract::ReadName(componentOf(occurrence(std::string("ab\0cd", 5)))), L"ab");
    EXPECT_EQ(extract::ReadName(componentOf(occurrence(std::string("\0cd", 3)))), L"");
}

}  // namespace
