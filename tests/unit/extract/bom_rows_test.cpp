#include "extract/bom_rows.h"

#include <gtest/gtest.h>

#include "platform/hps/exception.h"
#include "tests/support/memory_model.h"

namespace {

using extract::BOMRow;
using support::ComponentShape;
using support::item;
using support::makeModel;
using support::occurrence;
using support::part;

namespace ComponentType = HPS::ComponentType;
using Lines = std::vector<std::wstring>;

ComponentShape from(const char* file, const ComponentShape& shape) {
    return shape.with("Filename", std::string(file));
}

Lines lines(const std::vector<BOMRow>& rows) {
    Lines out;
    for (const BOMRow& row : rows) {
        out.push_back(std::to_wstring(row.quantity) + L" " + row.partName + L" " + row.fileName);
    }
    return out;
}

Lines rows(const HPS::Component& model) {
    std::vector<BOMRow> found;
    extract::LoadBOM(model, found);
    return lines(found);
}

TEST(BomRows, ARowHasItsDefaults) {
    const BOMRow row;
    EXPECT_EQ(row.partName, L"");
    EXPECT_EQ(row.fileName, L"");
    EXPECT_EQ(row.quantity, 1);
}

TEST(BomRows, AnEmptyModelHasNone) {
    EXPECT_TRUE(rows(HPS::CADModel()).empty());
    EXPECT_TRUE(rows(makeModel({})).empty());
}

TEST(BomRows, InstancesOfOneNameAndFileAreCounted) {
    const auto bolt = from("bolt.prt", part("Bolt"));
    EXPECT_EQ(rows(makeModel({occurrence("top", {bolt, occurrence("sub", {bolt, bolt}), bolt})})),
              (Lines{L"4 Bolt bolt.prt"}));
}

TEST(BomRows, OneNameFromTwoFilesGivesTwoRows) {
    EXPECT_EQ(rows(makeModel({occurrence("top", {from("a.prt", part("Bolt")),
                                                 from("b.prt", part("Bolt")), part("Bolt")})})),
              (Lines{L"1 Bolt a.prt", L"1 Bolt b.prt", L"1 Bolt "}));
}

TEST(BomRows, NamesAndFilesAreComparedExactly) {
    EXPECT_EQ(rows(makeModel({occurrence(
                  "top", {part("Bolt (1)"), part("Bolt (2)"), part("bolt"), part("Bolt"),
                          from("A.prt", part("Bolt")), from("a.prt", part("Bolt"))})})),
              (Lines{L"1 Bolt (1) ", L"1 Bolt (2) ", L"1 bolt ", L"1 Bolt ", L"1 Bolt A.prt",
                     L"1 Bolt a.prt"}));
}

TEST(BomRows, NameAndFileDoNotRunIntoEachOther) {
    EXPECT_EQ(rows(makeModel({occurrence(
                  "top", {from("bc", part("a")), from("c", part("ab")), from("", part("abc"))})})),
              (Lines{L"1 a bc", L"1 ab c", L"1 abc "}));
}

TEST(BomRows, AssembliesHaveNoRow) {
    EXPECT_EQ(rows(makeModel({occurrence("top", {occurrence("sub", {part("a")}), part("b")})})),
              (Lines{L"1 a ", L"1 b "}));
    // One part below is enough to make an assembly.
    EXPECT_EQ(rows(makeModel({occurrence("top", {part("a")})})), (Lines{L"1 a "}));
}

TEST(BomRows, AnOccurrenceWithNothingBelowHasNoRow) {
    EXPECT_EQ(rows(makeModel({occurrence("top", {occurrence("empty"), part("a")})})),
              (Lines{L"1 a "}));
    EXPECT_TRUE(rows(makeModel({occurrence("empty")})).empty());
}

TEST(BomRows, AModelOfOnePartHasItsRow) {
    EXPECT_EQ(rows(makeModel({from("p.prt", part("Plate"))})), (Lines{L"1 Plate p.prt"}));
}

TEST(BomRows, PartsBelowOtherComponentsAreFound) {
    const auto wrapped = item(ComponentType::PartDefinition, "", {part("a")});
    EXPECT_EQ(rows(makeModel({wrapped, occurrence("top", {wrapped, part("b")})})),
              (Lines{L"2 a ", L"1 b "}));
}

// A provider may leave a component out of its own count; then one level of occurrences below
// still counts as a part, and the walk goes on below it.
TEST(BomRows, TheWalkGoesOnBelowAPart) {
    class OthersOnly : public support::MemoryModel {
    public:
        std::size_t countAll(HPS::ComponentId id, std::uint32_t type) const override {
            return MemoryModel::countAll(id, type) - (MemoryModel::type(id) == type ? 1 : 0);
        }
    };
    support::MemoryModel::Builder builder(std::make_unique<OthersOnly>());
    builder.addShape(0, occurrence("outer", {part("inner")}));
    EXPECT_EQ(rows(HPS::CADModel(builder.finish())), (Lines{L"1 outer ", L"1 inner "}));
}

TEST(BomRows, UnnamedPartsHaveARowToo) {
    EXPECT_EQ(rows(makeModel({occurrence("top", {part(""), part("")})})), (Lines{L"2  "}));
}

TEST(BomRows, AFileNameThatIsNoTextCountsAsNone) {
    EXPECT_EQ(rows(makeModel({part("a").with("Filename", 1.5)})), (Lines{L"1 a "}));
}

TEST(BomRows, RowsThatAreThereGoOnCounting) {
    std::vector<BOMRow> found = {{L"b", L"", 5}};
    const auto model = makeModel({occurrence("top", {part("a"), part("b"), part("a")})});
    extract::CollectBOMRows(model.GetSubcomponents()[0], found);
    EXPECT_EQ(lines(found), (Lines{L"6 b ", L"2 a "}));
    extract::CollectBOMRows(model.GetSubcomponents()[0].GetSubcomponents()[0], found);
    EXPECT_EQ(lines(found), (Lines{L"6 b ", L"3 a "}));
}

TEST(BomRows, OfEqualRowsThatAreThereTheFirstCounts) {
    std::vector<BOMRow> found = {{L"a", L"", 1}, {L"b", L"", 2}, {L"b", L"", 7}};
    extract::LoadBOM(makeModel({part("b")}), found);
    EXPECT_EQ(lines(found), (Lines{L"1 a ", L"3 b ", L"7 b "}));
}

TEST(BomRows, RowsComeInModelOrder) {
    EXPECT_EQ(
        rows(makeModel(
            {occurrence("top", {part("c"), occurrence("s", {part("b")}), part("a")}), part("d")})),
        (Lines{L"1 c ", L"1 b ", L"1 a ", L"1 d "}));
}

TEST(BomRows, ExceptionsOfTheModelPassThrough) {
    class Unreadable : public support::MemoryModel {
    public:
        std::string name(HPS::ComponentId) const override { throw HPS::Exception("unreadable"); }
    };
    support::MemoryModel::Builder builder(std::make_unique<Unreadable>());
    builder.addShape(0, part("a"));
    const HPS::CADModel model(builder.finish());
    std::vector<BOMRow> found;
    EXPECT_THROW(extract::LoadBOM(model, found), HPS::Exception);
}

TEST(BomRows, TwentyThousandLevelsTakeNoStack) {
    support::MemoryModel::Builder builder;
    HPS::ComponentId end = 0;
    for (int i = 0; i < 20000; ++i) end = builder.addOccurrence(end, "level");
    builder.addShape(end, part("deep"));
    EXPECT_EQ(rows(HPS::CADModel(builder.finish())), (Lines{L"1 deep "}));
}

// Quadratic time would show as minutes.
TEST(BomRows, AHundredThousandDifferentPartsTakeTheirTimeOnce) {
    support::MemoryModel::Builder builder;
    for (int i = 0; i < 200000; ++i) {
        const auto id = builder.addOccurrence(0, "part " + std::to_string(i % 100000));
        builder.add(id, ComponentType::PartDefinition, "");
    }
    std::vector<BOMRow> found;
    extract::LoadBOM(HPS::CADModel(builder.finish()), found);
    ASSERT_EQ(found.size(), 100000U);
    EXPECT_EQ(found.back().partName, L"part 99999");
    EXPECT_EQ(found.back().quantity, 2);
}

}  // namespace
