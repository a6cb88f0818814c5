#include "results/part_rows.h"

#include <random>

#include "diff/part_attributes.h"
#include "extract/case_folding.h"
#include "tests/unit/results/results_fixture.h"

namespace {

using extract::ItemDiffState;
using extract::PartAttributes;
using results::PartPair;
using results::ResultSection;
using Parts = std::vector<PartAttributes>;

class PartMode : public ResultsTest {
protected:
    void show(const Parts& reference, const Parts& compare) {
        create();
        dialog->SetPartAttributeData(reference, compare);
        dialog->ShowSection(ResultSection::Attributes);
        window().press(1314);
    }
    void click(int row) { window().clickRow(1309, row); }
    static PartAttributes equal(const std::wstring& name) { return part(name, {{L"k", L"v", {}}}); }
};

std::vector<std::pair<int, int>> positions(const std::vector<PartPair>& pairs) {
    std::vector<std::pair<int, int>> all;
    for (const PartPair& pair : pairs) all.emplace_back(pair.referenceIndex, pair.compareIndex);
    return all;
}

/// The pairing as one would do it by hand.
std::vector<PartPair> pairByHand(const Parts& reference, const Parts& compare) {
    std::vector<PartPair> pairs;
    std::vector<bool> used(reference.size());
    for (std::size_t c = 0; c < compare.size(); ++c) {
        std::int32_t found = -1;
        for (std::size_t r = 0; r < reference.size() && found < 0; ++r) {
            if (used[r] || !extract::EqualNoCase(reference[r].name, compare[c].name)) continue;
            used[r] = true;
            found = static_cast<std::int32_t>(r);
        }
        pairs.push_back({found, static_cast<std::int32_t>(c), compare[c].name});
    }
    for (std::size_t r = 0; r < reference.size(); ++r) {
        if (!used[r]) pairs.push_back({static_cast<std::int32_t>(r), -1, reference[r].name});
    }
    return pairs;
}

TEST_F(PartMode, PairsAsTheSearchByHandDoes) {
    std::mt19937 random(7);
    const wchar_t* const names[] = {L"a", L"A", L"b", L"\u00c4", L"\u00e4", L"", L"bolt"};
    for (int round = 0; round < 300; ++round) {
        Parts reference;
        Parts compare;
        for (Parts* side : {&reference, &compare}) {
            const std::size_t count = random() % 12;
            for (std::size_t i = 0; i < count; ++i) side->push_back(part(names[random() % 7], {}));
        }
        const auto pairs = results::PairParts(reference, compare);
        const auto expected = pairByHand(reference, compare);
        ASSERT_EQ(positions(pairs), positions(expected)) << round;
        for (std::size_t i = 0; i < pairs.size(); ++i) ASSERT_EQ(pairs[i].name, expected[i].name);
    }
}

TEST_F(PartMode, NoPartsGiveTwoEmptyLists) {
    show({}, {});
    EXPECT_TRUE(cells(1309).empty());
    EXPECT_TRUE(cells(1310).empty());
    click(0);
    click(-1);
}

TEST_F(PartMode, PartsComeInTheCompareFilesOrder) {
    show({part(L"a", {}, true), part(L"x", {}, true), part(L"b", {}, true)},
         {part(L"b", {}, true), part(L"A", {}, true)});
    EXPECT_EQ(cells(1309),
              (Cells{{L"b", L""}, {L"", L""}, {L"a", L""}, {L"", L""}, {L"x", L""}, {L"", L""}}));
    EXPECT_EQ(cells(1310),
              (Cells{{L"b", L""}, {L"", L""}, {L"A", L""}, {L"", L""}, {L"", L""}, {L"", L""}}));
    EXPECT_EQ(numbers(1310), (Numbers{4, 0, 4, 0, 4, 0}));
}

TEST_F(PartMode, ADifferentPartIsOpenWithoutAMarkerAndCannotBeClosed) {
    show({part(L"P", {{L"k", L"1", ItemDiffState::Different}}, true)},
         {part(L"P", {{L"k", L"2", ItemDiffState::Different}}, true)});
    const Cells open = {{L"P", L""}, {L"  k", L"1"}, {L"", L""}};
    EXPECT_EQ(cells(1309), open);
    EXPECT_EQ(numbers(1309), (Numbers{4, 3, 0}));
    click(0);
    EXPECT_EQ(cells(1309), open);
}

TEST_F(PartMode, APartOfOneSideIsOpenWithAnEmptyHeaderOnTheOther) {
    show({}, {part(L"P", {{L"k", L"1", ItemDiffState::OnlyInCompare}}, true)});
    EXPECT_EQ(cells(1309), (Cells{{L"", L""}, {L"  k", L""}, {L"", L""}}));
    EXPECT_EQ(numbers(1309), (Numbers{4, 1, 0}));
    EXPECT_EQ(cells(1310), (Cells{{L"P", L""}, {L"  k", L"1"}, {L"", L""}}));
    EXPECT_EQ(numbers(1310), (Numbers{4, 2, 0}));
    EXPECT_EQ(window().paintedRowColours(1309, 0).background, ui::rgb(240, 240, 240));
    EXPECT_EQ(window().paintedRowColours(1309, 1).text, ui::rgb(229, 57, 53));
}

TEST_F(PartMode, BothSidesShowTheSameKeys) {
    show({part(L"P", {{L"a", L"1", {}}, {L"b", L"2", ItemDiffState::OnlyInReference}}, true)},
         {part(L"P", {{L"c", L"3", ItemDiffState::OnlyInCompare}, {L"a", L"1", {}}}, true)});
    EXPECT_EQ(cells(1309),
              (Cells{{L"P", L""}, {L"  a", L"1"}, {L"  b", L"2"}, {L"  c", L""}, {L"", L""}}));
    EXPECT_EQ(cells(1310),
              (Cells{{L"P", L""}, {L"  a", L"1"}, {L"  b", L""}, {L"  c", L"3"}, {L"", L""}}));
    EXPECT_EQ(numbers(1309), (Numbers{4, 0, 1, 1, 0}));
    EXPECT_EQ(numbers(1310), (Numbers{4, 0, 2, 2, 0}));
}

TEST_F(PartMode, IdenticalPartsStartClosedAndOpenByAClickOnTheirHeader) {
    show({equal(L"P"), equal(L"Q")}, {equal(L"P"), equal(L"Q")});
    EXPECT_EQ(cells(1309), (Cells{{L"\u25b6 P", L""}, {L"\u25b6 Q", L""}}));
    click(1);
    const Cells opened = {{L"\u25b6 P", L""}, {L"\u25bc Q", L""}, {L"  k", L"v"}, {L"", L""}};
    EXPECT_EQ(cells(1309), opened);
    EXPECT_EQ(cells(1310), opened);
    for (const int row : {2, 3, 4, -1}) click(row);
    EXPECT_EQ(cells(1310), opened);
    window().clickRow(1310, 1);
    EXPECT_EQ(cells(1309).size(), 2U);
}

TEST_F(PartMode, ClicksOutsidePartModeDoNothing) {
    show({equal(L"P")}, {equal(L"P")});
    window().press(1313);
    dialog->SetAttributeData(rows({L"a"}, {L"b"}, {}, {}));
    click(0);
    EXPECT_EQ(cells(1309), (Cells{{L"a", L"b"}}));
    EXPECT_TRUE(dialog->folding().Collapsed(L"P"));
}

TEST_F(PartMode, NamesThatDifferInCasePairButCountAsTwoForClosing) {
    show({equal(L"p")}, {equal(L"P")});
    EXPECT_EQ(cells(1309), (Cells{{L"\u25bc p", L""}, {L"  k", L"v"}, {L"", L""}}));
    EXPECT_EQ(cells(1310)[0][0], L"\u25bc P");
    EXPECT_TRUE(dialog->folding().collapsedParts().empty());
}

TEST_F(PartMode, ANewRunForgetsWhatTheUserOpened) {
    show({equal(L"P")}, {equal(L"P")});
    click(0);
    EXPECT_EQ(dialog->folding().expandedParts().count(L"P"), 1U);
    dialog->SetPartAttributeData({equal(L"P")}, {equal(L"P")});
    EXPECT_EQ(cells(1309).size(), 3U);  // data alone forgets nothing
    dialog->RefreshResults();
    EXPECT_FALSE(dialog->partLevel());
    EXPECT_TRUE(dialog->folding().Collapsed(L"P"));
    EXPECT_TRUE(dialog->folding().expandedParts().empty());
}

TEST_F(PartMode, OfEqualKeysTheFirstEntryCounts) {
    const PartAttributes twice = part(L"P", {{L"k", L"1", {}}, {L"k", L"2", {}}});
    const auto keys = diff::KeysOf(&twice, nullptr);
    ASSERT_EQ(keys.size(), 2U);
    for (const auto* entry : results::EntriesOf(&twice, keys)) EXPECT_EQ(entry->value, L"1");
    EXPECT_EQ(results::EntriesOf(nullptr, keys)[0], nullptr);
    EXPECT_EQ(diff::KeysOf(nullptr, &twice).size(), 1U);
}

}  // namespace
