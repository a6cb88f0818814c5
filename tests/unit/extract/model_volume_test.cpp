#include "extract/model_volume.h"

#include <limits>

#include "tests/unit/extract/measured_model.h"

namespace {

using support::ComponentShape;
using support::item;
using support::occurrence;
using Display = bxtsg::SCInfo::UNITS;

namespace ComponentType = HPS::ComponentType;

ComponentShape exact(double volume) {
    return item(ComponentType::BrepModel, "S").with("#volume", volume);
}
ComponentShape mesh(double volume) {
    return item(ComponentType::PolyBrepModel, "M").with("#volume", volume);
}
ComponentShape partOf(std::vector<ComponentShape> bodies, const char* units = "Millimeter") {
    return occurrence("part", {item(ComponentType::PartDefinition, "", std::move(bodies))})
        .with("Units", std::string(units));
}

class Volumes : public WithExchangeLibrary {
protected:
    double volumeOf(const std::vector<ComponentShape>& top) {
        unit_ = L"none";
        return extract::ComputeModelVolume(job_, measuredModel(top), unit_);
    }
    std::wstring unit_;
};

TEST_F(Volumes, AModelWithoutBodiesHasNone) {
    EXPECT_EQ(extract::ComputeModelVolume(job_, HPS::CADModel(), unit_), 0.0);
    EXPECT_EQ(unit_, L"");
    EXPECT_EQ(volumeOf({}), 0.0);
    EXPECT_EQ(volumeOf({occurrence("top", {occurrence("empty")})}), 0.0);
    EXPECT_EQ(unit_, L"none");
}

TEST_F(Volumes, BodiesOfAllPartsAddUp) {
    EXPECT_EQ(volumeOf({occurrence("top", {partOf({exact(1.0), exact(2.0)}),
                                           occurrence("sub", {partOf({exact(4.0)})})}),
                        partOf({exact(8.0)})}),
              15.0);
    EXPECT_EQ(unit_, L"mm");
    EXPECT_EQ(libraryScript().calls, (std::vector<std::string>(4, "exact")));
}

TEST_F(Volumes, BodiesOfAnAssemblyItselfAreNotMeasured) {
    EXPECT_EQ(volumeOf({occurrence("top", {exact(100.0), partOf({exact(1.0)})})}), 1.0);
}

TEST_F(Volumes, MeshesCountOnlyInPartsWithoutExactBodies) {
    EXPECT_EQ(volumeOf({occurrence("top", {partOf({mesh(100.0), exact(1.0)}),
                                           partOf({mesh(2.0), mesh(4.0)}), partOf({exact(8.0)})})}),
              15.0);
    EXPECT_EQ(libraryScript().calls, (std::vector<std::string>{"exact", "mesh", "mesh", "exact"}));
}

TEST_F(Volumes, AnExactBodyThatCannotBeMeasuredStillKeepsMeshesOut) {
    EXPECT_EQ(volumeOf({partOf({exact(1.0).with("#fails", true), mesh(2.0)})}), 0.0);
    EXPECT_EQ(volumeOf({partOf({item(ComponentType::BrepModel, "S"), mesh(2.0)})}), 0.0);
    EXPECT_EQ(libraryScript().count("mesh"), 0U);
}

TEST_F(Volumes, OtherItemsAreNotMeasured) {
    EXPECT_EQ(volumeOf({partOf({item(ComponentType::Curve, "c").with("#volume", 5.0),
                                item(ComponentType::PointSet, "p").with("#volume", 5.0)})}),
              0.0);
    EXPECT_TRUE(libraryScript().calls.empty());
}

TEST_F(Volumes, ANegativeVolumeCountsWithItsSignTurned) {
    EXPECT_EQ(volumeOf({partOf({exact(-2.5), exact(1.0)})}), 3.5);
}

TEST_F(Volumes, ABodyThatCannotBeMeasuredAddsNothing) {
    EXPECT_EQ(volumeOf({partOf({exact(7.0).with("#fails", true), exact(1.0)})}), 1.0);
    EXPECT_EQ(volumeOf({partOf({exact(std::numeric_limits<double>::quiet_NaN()),
                                exact(std::numeric_limits<double>::infinity()), exact(2.0)})}),
              2.0);
}

TEST_F(Volumes, ABodyWithoutAnEntityIsPassedOver) {
    const auto without = item(ComponentType::BrepModel, "S");
    EXPECT_EQ(volumeOf({partOf({without})}), 0.0);
    EXPECT_EQ(unit_, L"none");
    EXPECT_TRUE(libraryScript().calls.empty());
    EXPECT_EQ(volumeOf({partOf({exact(1.0), without, exact(2.0)})}), 3.0);
}

TEST_F(Volumes, AFailedBodyStillNamesTheUnit) {
    EXPECT_EQ(volumeOf({partOf({exact(1.0).with("#fails", true)})}), 0.0);
    EXPECT_EQ(unit_, L"mm");
}

TEST_F(Volumes, EachBodyIsScaledFromItsOwnUnit) {
    EXPECT_DOUBLE_EQ(
        volumeOf({occurrence("top", {partOf({exact(2.0)}, "Inch"),
                                     partOf({exact(3.0)}, "Centimeter"), partOf({exact(5.0)})})}),
        2.0 * 25.4 * 25.4 * 25.4 + 3000.0 + 5.0);
    EXPECT_EQ(unit_, L"mm");
}

TEST_F(Volumes, ComeInTheDisplayUnit) {
    setDisplayUnit(Display::Inch);
    EXPECT_DOUBLE_EQ(volumeOf({partOf({exact(25.4 * 25.4 * 25.4)})}), 1.0);
    EXPECT_EQ(unit_, L"in");
    setDisplayUnit(Display::Meter);
    EXPECT_DOUBLE_EQ(volumeOf({partOf({exact(1.0)}, "Kilometer")}), 1e9);
    EXPECT_EQ(unit_, L"m");
}

TEST_F(Volumes, ThereAreMillimetresWithoutADocument) {
    job_.sourceFactory.reset();
    EXPECT_DOUBLE_EQ(volumeOf({partOf({exact(1.0)}, "Meter")}), 1e9);
    EXPECT_EQ(unit_, L"mm");
}

TEST_F(Volumes, EveryUnitKeepsItsOwnNameAndNumberOnItsOwnDisplay) {
    const std::pair<const char*, const wchar_t*> kUnits[] = {
        {"Millimeter", L"mm"}, {"Centimeter", L"cm"}, {"Meter", L"m"}, {"Kilometer", L"Km"},
        {"Inch", L"in"},       {"Foot", L"ft"},       {"Yard", L"yd"}, {"Mile", L"mi"},
    };
    std::int32_t number = 0;
    for (const auto& [units, name] : kUnits) {
        setDisplayUnit(static_cast<Display>(number++));
        EXPECT_EQ(volumeOf({partOf({exact(0.1)}, units)}), 0.1) << units;
        EXPECT_EQ(unit_, name);
    }
}

TEST_F(Volumes, TheLastBodyNamesTheUnit) {
    // A display unit of no known number scales nothing, so every body keeps its own unit's name.
    setDisplayUnit(static_cast<Display>(99));
    EXPECT_EQ(
        volumeOf({occurrence("top", {partOf({exact(1.0)}, "Inch"), partOf({exact(2.0)}, "Foot")})}),
        3.0);
    EXPECT_EQ(unit_, L"ft");
}

TEST_F(Volumes, UnknownUnitTextsAreMetres) {
    EXPECT_DOUBLE_EQ(volumeOf({partOf({exact(1.0)}, "Furlong")}), 1e9);
}

TEST_F(Volumes, AreNoneWithoutTheLibrary) {
    extract::importLibrary().Release();
    EXPECT_EQ(volumeOf({partOf({exact(1.0)})}), 0.0);
    EXPECT_EQ(unit_, L"mm");
}

TEST_F(Volumes, OneInstanceCountsAsOftenAsItOccurs) {
    const std::vector<ComponentShape> bolts(500, partOf({exact(2.0)}));
    EXPECT_EQ(volumeOf({occurrence("top", bolts)}), 1000.0);
}

}  // namespace
