#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "tests/integration/pairs/expected_tree.h"
#include "tests/support/real_data.h"

// Two revisions of a circuit board with its components. The expectations were worked out from the
// files' text. Each component is an assembly of one nameless COMPOUND (SOLID for two of them); in
// the second revision two other light emitters take the place of the old ones, the order of the
// components is another, the board has another outline, and everything was placed anew around
// another origin.

namespace {

using support::CompareReport;
using support::ReportInstance;

constexpr const char* kRoot = "Open CASCADE STEP translator 6.9 1";

class Miniscope : public testing::Test {
protected:
    void SetUp() override {
        SKIP_WITHOUT_REAL_DATA();
        pairs::compareDifferingFiles(support::realFile("Miniscope1"),
                                     support::realFile("Miniscope2"), report_);
    }

    /// Instances of the component at this place below the root.
    std::vector<ReportInstance> of(const std::string& component) const {
        const std::string start = std::string(kRoot) + " / " + component + " / ";
        std::vector<ReportInstance> found;
        for (const auto& each : report_.instances) {
            if (each.reference.path.starts_with(start) || each.compare.path.starts_with(start)) {
                found.push_back(each);
            }
        }
        return found;
    }

    CompareReport report_;
};

std::map<std::string, std::size_t> states(const std::vector<ReportInstance>& instances) {
    std::map<std::string, std::size_t> counts;
    for (const auto& each : instances) ++counts[each.state];
    return counts;
}

using States = std::map<std::string, std::size_t>;

/// A product below the root, by what the file says of it: the names of the products that it uses,
/// and how many solids each of those has. The solids have no names of their own; two and more in
/// one part are shown, numbered.
struct Product {
    const char* name;
    std::vector<std::pair<const char*, int>> uses;
};

struct Component {
    Product product;
    const char* state;
};

const Product kScrew = {"96817A704_THREAD-FORMING_SCREW_FOR_THIN_PLASTIC", {{"SOLID", 1}}};
const Product kLed = {"LED_LXZ1_PR01_L", {{"COMPOUND", 5}}};
const Product kInGaN = {"LUXEON_Z_InGaN_Direct_Color_0660", {{"SOLID", 1}}};
/// Its second part has a representation without any item, but it is used like any other.
const Product kLime = {"LUXEON_Z_Lime", {{"COMPOUND", 1}, {"COMPOUND", 0}}};
const Product kSon = {"SON_11_P50_300X200X80L40X25T239X64L", {{"COMPOUND", 12}}};
const Product kR0201 = {"R_0201_0603Metric_ERJ_L", {{"COMPOUND", 4}}};
const Product kSod = {"SOD_323_250X125X110L30X32L", {{"COMPOUND", 3}}};
const Product kBga = {"BGA_15_NP50_3X5_155X255X69B31N", {{"COMPOUND", 17}}};
const Product kQfn = {"QFN_14_P40_200X200X40L40X20L", {{"COMPOUND", 15}}};
const Product kC0201 = {"C_0201_0603Metric_L", {{"COMPOUND", 3}}};
const Product kC0402 = {"C_0402_1005Metric_L", {{"COMPOUND", 3}}};
const Product kC0603 = {"C_0603_1608Metric_L", {{"COMPOUND", 3}}};
const Product kL0603 = {"L_0603_1608Metric_L", {{"COMPOUND", 3}}};
const Product kBoard = {"COMPOUND", {}};

/// The components from position 10 on: the same in both files, but for the one at 24.
void addRest(std::vector<Component>& components, const Component& emitter) {
    const Product* const before[] = {&kC0201, &kC0201, &kC0201, &kC0201, &kC0603, &kC0201, &kR0201,
                                     &kR0201, &kC0201, &kC0402, &kC0402, &kL0603, &kC0402, &kC0201};
    for (const Product* product : before) components.push_back({*product, "same"});
    components.push_back(emitter);
    for (int i = 0; i < 4; ++i) components.push_back({kR0201, "same"});
    components.push_back({kBoard, "same"});
}

/// The whole tree as drawn; what is added or deleted takes everything below it along.
std::string treeOf(const std::vector<Component>& components) {
    std::string text = std::string(kRoot) + " | modified\n";
    for (const auto& [product, state] : components) {
        text += "  " + std::string(product.name) + " | " + state + "\n";
        const std::string below = state == std::string("moved") ? "same" : state;
        for (const auto& [name, solids] : product.uses) {
            text += "    " + std::string(name) + " | " + below + "\n";
            for (int i = 1; solids > 1 && i <= solids; ++i) {
                text += "      Body " + std::to_string(i) + " | " + below + "\n";
            }
        }
    }
    return text;
}

}  // namespace

// Siblings of one name pair in order. A pair is moved when its name is there equally often on both
// sides and its position among all siblings is another: the two screws (0, 1 against 2, 3), the
// two SON_11 (3, 8 against 1, 9), the first two R_0201 (4, 5 against 5, 6), SOD (6 against 7),
// BGA (7 against 8) and QFN (9 against 0). From position 10 on all is equal again, but for the
// second emitter at 24. What lies below a moved component did not move within it.
TEST_F(Miniscope, ReferenceTreeLosesItsEmittersAndMovesNineComponents) {
    std::vector<Component> components = {
        {kScrew, "moved"}, {kScrew, "moved"}, {kLed, "deleted"}, {kSon, "moved"}, {kR0201, "moved"},
        {kR0201, "moved"}, {kSod, "moved"},   {kBga, "moved"},   {kSon, "moved"}, {kQfn, "moved"}};
    addRest(components, {kLed, "deleted"});
    EXPECT_EQ(pairs::drawn(report_.reference), treeOf(components));
}

TEST_F(Miniscope, CompareTreeGainsTwoEmittersAndMovesNineComponents) {
    std::vector<Component> components = {{kQfn, "moved"},   {kSon, "moved"},   {kScrew, "moved"},
                                         {kScrew, "moved"}, {kInGaN, "added"}, {kR0201, "moved"},
                                         {kR0201, "moved"}, {kSod, "moved"},   {kBga, "moved"},
                                         {kSon, "moved"}};
    addRest(components, {kLime, "added"});
    EXPECT_EQ(pairs::drawn(report_.compare), treeOf(components));
}

// Rows follow the compare side; the two old emitters are left over and come last.
TEST_F(Miniscope, RowsFollowTheCompareFileAndEndWithTheOldEmitters) {
    const auto rows = pairs::drawnRows(report_);
    // 30 components and 30 parts of the compare file, 127 bodies in parts that have several, the
    // top; then two emitters with a part and five bodies each.
    ASSERT_EQ(rows.size(), 30U + 30U + 127U + 1U + 2U * 7U);
    EXPECT_EQ(rows[0], std::string(kRoot) + " modified <> " + kRoot + " modified");
    EXPECT_EQ(rows[1], "QFN_14_P40_200X200X40L40X20L moved <> QFN_14_P40_200X200X40L40X20L moved");
    EXPECT_EQ(rows[2], "COMPOUND same <> COMPOUND same");
    EXPECT_EQ(rows[3], "Body 1 same <> Body 1 same");
    const std::vector<std::string> emitter = {
        "LED_LXZ1_PR01_L deleted <> -", "COMPOUND deleted <> -", "Body 1 deleted <> -",
        "Body 2 deleted <> -",          "Body 3 deleted <> -",   "Body 4 deleted <> -",
        "Body 5 deleted <> -"};
    EXPECT_EQ(rows[rows.size() - 15], "COMPOUND same <> COMPOUND same");
    EXPECT_EQ(std::vector<std::string>(rows.end() - 14, rows.end() - 7), emitter);
    EXPECT_EQ(std::vector<std::string>(rows.end() - 7, rows.end()), emitter);
}

// Both paths lead through the names alone, so they are equal although the place is another.
TEST_F(Miniscope, MovedComponentsCarryTheirPaths) {
    for (const auto* tree : {&report_.reference, &report_.compare}) {
        for (const auto& node : *tree) {
            const std::string path =
                node.state == "moved" ? std::string(kRoot) + "." + node.displayName : "";
            EXPECT_EQ(node.movedFromPath, path);
            EXPECT_EQ(node.movedToPath, path);
        }
    }
}

// Bodies: 2 screws, 2 emitters of 5 bodies, 2 SON of 12, 8 resistors of 4, one SOD of 3, one BGA
// of 17, one QFN of 15, 7 + 1 + 3 capacitors of 3, a coil of 3 and the board: 140. The second file
// has the same but for the emitters, of one body each: 132.
TEST_F(Miniscope, EveryBodyOfBothFilesIsAccountedFor) {
    std::size_t reference = 0;
    std::size_t compare = 0;
    for (const auto& each : report_.instances) {
        reference += each.reference.present ? 1 : 0;
        compare += each.compare.present ? 1 : 0;
    }
    EXPECT_EQ(reference, 140U);
    EXPECT_EQ(compare, 132U);
}

// No body stands where it stood; none of the 129 others has another shape than before.
TEST_F(Miniscope, EverythingMovedTheBoardChangedAndTheEmittersWereReplaced) {
    EXPECT_EQ(
        states(report_.instances),
        (States{
            {"moved", 129}, {"changed", 1}, {"only in reference", 10}, {"only in compare", 2}}));
    EXPECT_EQ(states(of("LED_LXZ1_PR01_L")), (States{{"only in reference", 10}}));
    EXPECT_EQ(states(of("LUXEON_Z_InGaN_Direct_Color_0660")), (States{{"only in compare", 1}}));
    EXPECT_EQ(states(of("LUXEON_Z_Lime")), (States{{"only in compare", 1}}));
    for (const auto& each : report_.instances) {
        if (each.state != "changed") continue;
        EXPECT_EQ(each.reference.path, std::string(kRoot) + " / COMPOUND");
        EXPECT_EQ(each.compare.path, std::string(kRoot) + " / COMPOUND");
        EXPECT_EQ(each.reference.faceCount, 19);
        EXPECT_EQ(each.compare.faceCount, 19);
    }
}

// Components that are there once, by how far their placements lie apart in the two files.
TEST_F(Miniscope, SingleComponentsMovedWithTheOrigin) {
    const std::map<std::string, std::size_t> bodies = {{"SOD_323_250X125X110L30X32L", 3},
                                                       {"BGA_15_NP50_3X5_155X255X69B31N", 17},
                                                       {"QFN_14_P40_200X200X40L40X20L", 15},
                                                       {"C_0603_1608Metric_L", 3},
                                                       {"L_0603_1608Metric_L", 3}};
    for (const auto& [component, count] : bodies) {
        const auto instances = of(component);
        EXPECT_EQ(states(instances), (States{{"moved", count}})) << component;
        for (const auto& each : instances) {
            EXPECT_NEAR(each.displacementMm[0], 7.8858, 2e-4) << component;
            EXPECT_NEAR(each.displacementMm[1], -1.0858, 2e-4) << component;
            EXPECT_NEAR(each.displacementMm[2], 0.0, 2e-4) << component;
        }
    }
}
