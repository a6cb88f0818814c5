#include <set>

#include <gtest/gtest.h>

#include "backends/occt/step/attributes.h"
#include "backends/occt/step/pmi.h"
#include "platform/hps/component_type.h"
#include "tests/support/real_data.h"
#include "tests/support/step_text.h"
#include "tests/unit/backends/occt/step/attribute_texts.h"

namespace {

namespace Type = HPS::ComponentType;
using occt::step::Pmi;

constexpr const char* kFiles[] = {
    "OCCT__bug29241.stp",
    "OCCT__bug32745_pmi1.stp",
    "OCCT__bug33569.stp",
    "OCCT__bug33638.stp",
    "OCCT__ftc_08_tg_exports__1__nist_ftc_08_asme1_ap242-2.stp",
    "OCCT__ftc_08_tg_exports__2__bug33661_nist_ftc_08_asme1_ap242-e1-tg.stp",
    "OCCT__trj12_gd1-id-214.stp",
    "OCCT__trj4_d2-tu-214.stp",
    "OCCT__trj5_d3-tc-214.stp",
    "OCCT__trj5_d3-tu-214.stp",
    "SFA__nist_ctc_02_asme1_ap242-1.stp",
    "smstestbed__827-9999-904.stp",
};

std::string textOf(const std::string& file) {
    return support::readFile(support::realDataFolder() / "B-pmi" / file);
}

/// Everything that is read from a text besides geometry, one line each.
std::vector<std::string> readingOf(const std::string& text) {
    const occt::step::Part21 file(text);
    const auto products = occt::step::readProducts(file);
    std::vector<std::string> out;
    for (const Pmi& pmi : occt::step::readPmi(file, products)) {
        out.push_back(std::to_string(pmi.type) + "|" + pmi.name + "|" + pmi.text);
    }
    const auto attributes = occt::step::readAttributes(file, products);
    // Products come in the order of the file.
    std::multiset<std::string> byProduct;
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        std::string all = products.products[i].name;
        for (const std::string& value : step_test::shown(attributes.products[i])) {
            all += "\n" + value;
        }
        byProduct.insert(all);
    }
    out.insert(out.end(), byProduct.begin(), byProduct.end());
    for (const std::string& value : step_test::shown(attributes.file)) out.push_back(value);
    return out;
}

std::vector<Pmi> pmiIn(const std::string& text) {
    const occt::step::Part21 file(text);
    return occt::step::readPmi(file, occt::step::readProducts(file));
}

struct Counts {
    std::size_t dimensions = 0;
    std::size_t tolerances = 0;
    std::size_t datums = 0;
    std::size_t targets = 0;
    bool operator==(const Counts&) const = default;
};

void PrintTo(const Counts& counts, std::ostream* stream) {
    *stream << counts.dimensions << " dimensions, " << counts.tolerances << " tolerances, "
            << counts.datums << " datums, " << counts.targets << " targets";
}

/// Counted by the words of the text alone.
Counts countedIn(const std::string& text) {
    static const std::set<std::string> dimensions = {"ANGULAR_LOCATION",
                                                     "ANGULAR_SIZE",
                                                     "DIMENSIONAL_LOCATION",
                                                     "DIMENSIONAL_LOCATION_WITH_DATUM_FEATURE",
                                                     "DIMENSIONAL_LOCATION_WITH_PATH",
                                                     "DIMENSIONAL_SIZE",
                                                     "DIMENSIONAL_SIZE_WITH_DATUM_FEATURE",
                                                     "DIMENSIONAL_SIZE_WITH_PATH",
                                                     "DIRECTED_DIMENSIONAL_LOCATION"};
    static const std::set<std::string> tolerances = {
        "ANGULARITY_TOLERANCE",       "CIRCULAR_RUNOUT_TOLERANCE", "COAXIALITY_TOLERANCE",
        "CONCENTRICITY_TOLERANCE",    "CYLINDRICITY_TOLERANCE",    "FLATNESS_TOLERANCE",
        "GEOMETRIC_TOLERANCE",        "LINE_PROFILE_TOLERANCE",    "PARALLELISM_TOLERANCE",
        "PERPENDICULARITY_TOLERANCE", "POSITION_TOLERANCE",        "ROUNDNESS_TOLERANCE",
        "STRAIGHTNESS_TOLERANCE",     "SURFACE_PROFILE_TOLERANCE", "SYMMETRY_TOLERANCE",
        "TOTAL_RUNOUT_TOLERANCE"};
    Counts counts;
    const auto file = support::StepText::parse(text);
    if (!file) return counts;
    for (const support::StepEntity& entity : file->entities) {
        bool isDimension = false;
        bool isTolerance = false;
        bool isDatum = false;
        bool isTarget = false;
        for (const std::string& type : support::entityTypes(entity.text)) {
            isDimension = isDimension || dimensions.count(type) != 0;
            isTolerance = isTolerance || tolerances.count(type) != 0;
            isDatum = isDatum || type == "DATUM" || type == "COMMON_DATUM";
            isTarget = isTarget || type == "DATUM_TARGET" || type == "PLACED_DATUM_TARGET_FEATURE";
        }
        counts.dimensions += isDimension ? 1 : 0;
        counts.tolerances += isTolerance ? 1 : 0;
        counts.datums += isDatum ? 1 : 0;
        counts.targets += isTarget ? 1 : 0;
    }
    return counts;
}

Counts readIn(const std::string& text) {
    Counts counts;
    for (const Pmi& pmi : pmiIn(text)) {
        counts.dimensions += pmi.type == Type::PmiDimension ? 1 : 0;
        counts.tolerances += pmi.type == Type::PmiTolerance ? 1 : 0;
        counts.datums += pmi.type == Type::PmiDatum ? 1 : 0;
        counts.targets += pmi.type == Type::PmiDatumTarget ? 1 : 0;
    }
    return counts;
}

TEST(StepPmiRealData, CountsAgreeWithTheWordsOfTheText) {
    SKIP_WITHOUT_REAL_DATA();
    Counts all;
    for (const char* file : kFiles) {
        const std::string text = textOf(file);
        ASSERT_FALSE(text.empty()) << file;
        const Counts counted = countedIn(text);
        EXPECT_EQ(readIn(text), counted) << file;
        all.dimensions += counted.dimensions;
        all.tolerances += counted.tolerances;
        all.datums += counted.datums;
        all.targets += counted.targets;
    }
    EXPECT_EQ(all, (Counts{96, 48, 19, 9}));
}

/// Lines that were put together by hand from the entities whose numbers stand beside them.
struct Line {
    const char* file;
    const char* name;
    const char* text;
};

constexpr Line kLines[] = {
    // #70, #84 = 52, #35, #42: -0.15 to 0.15; #777 is drawn for it with the text "2X" (#109, #104).
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Radial Dimension (17)", "2X \u230052 \u00B10.15"},
    // #195, #173 = 1, zone #166 round, #261: A (#199), B (#200), C (#201).
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (18)",
     "\u2316 \u23001 \u24C1 A B C"},
    // #196, #175 = 1.5, zone #167 round.
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (20)",
     "\u2316 \u23001.5 \u24C2 A B C"},
    // #111, #174 = 0.25.
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (14)", "\u2312 0.25 A B C"},
    // #23, #50001 = 2.5, displaced by #176 = 0.5.
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (21)",
     "\u2313 2.5 \u24CA 0.5 A B C"},
    // #12, #190 = 0.05.
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (34)", "\u23E5 0.05"},
    // #13, #182 = 0.1.
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (42)", "\u2313 0.1"},
    // #21, #181 = 0.05, zone #169 round, D (#205).
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (37)", "\u27C2 \u23000.05 D"},
    // #22, #193 = 0.1, zone #172 round, G (#206).
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (45)",
     "\u27C2 \u23000.1 \u24C1 G"},
    // #27, #183 = 0.8, G (#232), H (#233) and J (#234) with modifiers.
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Feature Control Frame (52)",
     "\u2313 0.8 G H \u24C1 J \u24C1"},
    // #158, target 1 of K (#202), a circle; #86 = 85.
    {"SFA__nist_ctc_02_asme1_ap242-1.stp", "Datum target K1", "K1 circle \u230085"},
    // #1603, #1625 = 25, #1628 and #1630 = 0.2, two digits by #1626 and #1632.
    {"OCCT__bug32745_pmi1.stp", "Linear Size.1", "R25.00 \u00B10.20"},
    // #1715, #1741 = 10, #1744 = -0.04, #1746 = -0.02.
    {"OCCT__bug32745_pmi1.stp", "Linear Size.2", "10.00 -0.02/-0.04"},
    // #1829, #1857 = 5, auxiliary by #1855.
    {"OCCT__bug32745_pmi1.stp", "Dimension.1", "(5.00)"},
    // #335, #326 = 0.05, #305, #315, #325.
    {"OCCT__trj12_gd1-id-214.stp", "FC4", "\u2316 0.05 \u24C2 A B C"},
    // #343, #338 = 0.01, first #306 (B), second #316 (C).
    {"OCCT__trj12_gd1-id-214.stp", "FC6", "\u27C2 0.01 B C"},
    // #360, #348 = 0.950000000000002, #353 = 1.050000000000002.
    {"OCCT__trj12_gd1-id-214.stp", "Diametral size dimension", "\u23000.95\u20261.05"},
    // #53792, #53787 = 0.2, zone #53793 round, #17809, #21559, #25483.
    {"OCCT__bug33569.stp", "gp26", "\u2316 \u23000.2 A B C"},
    // #12617, #12612 = 295 with two digits by #12611, theoretical by #12613.
    {"OCCT__bug33569.stp", "ad38", "[295.00]"},
    // #14210, #14209 = 0.2.
    {"OCCT__bug33569.stp", "gp16", "\u23E5 0.2"},
    // #556, #567 = 50, #563 = -5, #564 = 5.
    {"OCCT__trj4_d2-tu-214.stp", "Dimensional location 6", "50 \u00B15"},
    // #35361, #35346 = 0.008, A (#27728).
    {"smstestbed__827-9999-904.stp", "Feature Control Frame (207)", "\u2220 0.008 A"},
    // #38471, #38451 = 0.375 with three digits, #38481 = 0.005 before #38486 = -0.005.
    {"smstestbed__827-9999-904.stp", "Diameter Dimension (68)", "\u23000.375 \u00B10.005"},
};

TEST(StepPmiRealData, LinesAreWhatTheEntitiesSay) {
    SKIP_WITHOUT_REAL_DATA();
    for (const Line& line : kLines) {
        std::string found = "not there";
        for (const Pmi& pmi : pmiIn(textOf(line.file))) {
            if (pmi.name == line.name) found = pmi.text;
        }
        EXPECT_EQ(found, line.text) << line.file << ": " << line.name;
    }
}

TEST(StepPmiRealData, NumbersAndOrderOfEntitiesPlayNoPart) {
    SKIP_WITHOUT_REAL_DATA();
    for (const char* file : kFiles) {
        const std::string text = textOf(file);
        const auto parsed = support::StepText::parse(text);
        ASSERT_TRUE(parsed) << file;
        EXPECT_EQ(readingOf(support::renumberedAndShuffled(*parsed, 7).write()),
                  readingOf(parsed->write()))
            << file;
    }
}

}  // namespace
