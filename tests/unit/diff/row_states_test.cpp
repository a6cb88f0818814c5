#include "diff/row_states.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using diff::RowStates;
using diff::RowTexts;
using diff::SearchName;
using extract::ItemDiffState;

using Texts = std::vector<std::wstring_view>;
using States = std::vector<ItemDiffState>;

constexpr auto kSame = ItemDiffState::Unchanged;
constexpr auto kOnlyHere = ItemDiffState::OnlyInReference;
constexpr auto kDifferent = ItemDiffState::Different;

TEST(NameSearch, AnEmptyListIsAMiss) {
    EXPECT_EQ(SearchName({}, L"a"), diff::kNotFound);
    EXPECT_EQ(SearchName({}, L""), diff::kNotFound);
}

TEST(NameSearch, FindsEveryNameOfASortedList) {
    std::vector<std::wstring> names;
    for (int i = 0; i < 40; ++i) {
        names.push_back(L"name " + std::to_wstring(100 + i));
        const Texts list(names.begin(), names.end());
        for (std::size_t j = 0; j < names.size(); ++j) {
            EXPECT_EQ(SearchName(list, L"NAME " + std::to_wstring(100 + j)),
                      static_cast<std::ptrdiff_t>(j));
        }
        EXPECT_EQ(SearchName(list, L"name 099"), diff::kNotFound);
        EXPECT_EQ(SearchName(list, L"name 100x"), diff::kNotFound);
        EXPECT_EQ(SearchName(list, L"name 999"), diff::kNotFound);
    }
}

// Of five equal names the middle one is met first, of four the second.
TEST(NameSearch, OfEqualNamesTheFirstThatIsMetAnswers) {
    EXPECT_EQ(SearchName({L"a", L"a", L"a", L"a", L"a"}, L"a"), 2);
    EXPECT_EQ(SearchName({L"a", L"a", L"a", L"a"}, L"a"), 1);
    EXPECT_EQ(SearchName({L"a", L"b", L"b", L"b", L"c"}, L"B"), 2);
}

// Sorted with regard to case, B stands before a; a search without regard to it goes past.
TEST(NameSearch, MissesNamesWhereTheTwoOrdersDisagree) {
    const Texts list = {L"B", L"C", L"a"};
    EXPECT_EQ(SearchName(list, L"a"), diff::kNotFound);
    EXPECT_EQ(SearchName(list, L"b"), 0);
    EXPECT_EQ(SearchName(list, L"c"), 1);
    EXPECT_EQ(SearchName({L"Z", L"a"}, L"a"), diff::kNotFound);
    EXPECT_EQ(SearchName({L"Z", L"a", L"b"}, L"z"), diff::kNotFound);
}

TEST(RowStates, AreOnePerRow) {
    EXPECT_TRUE(RowStates({}, {{L"a"}, {L"1"}}, kOnlyHere).empty());
    const RowTexts own = {{L"a", L"b", L"c"}, {L"1", L"2", L"3"}};
    const RowTexts other = {{L"A", L"c", L"d"}, {L"1", L"x", L"4"}};
    EXPECT_EQ(RowStates(own, other, kOnlyHere), (States{kSame, kOnlyHere, kDifferent}));
    EXPECT_EQ(RowStates(own, {}, ItemDiffState::OnlyInCompare),
              States(3, ItemDiffState::OnlyInCompare));
}

TEST(RowStates, ValuesAreComparedExactly) {
    const RowTexts own = {{L"a", L"b"}, {L"Steel", L"1 "}};
    EXPECT_EQ(RowStates(own, {{L"a", L"b"}, {L"steel", L"1"}}, kOnlyHere), States(2, kDifferent));
}

TEST(RowStates, OneRowCanAnswerForSeveral) {
    const RowTexts own = {{L"a", L"a", L"a"}, {L"1", L"2", L"1"}};
    EXPECT_EQ(RowStates(own, {{L"a"}, {L"1"}}, kOnlyHere), (States{kSame, kDifferent, kSame}));
}

TEST(RowStates, WithoutValuesNamesDecide) {
    EXPECT_EQ(RowStates({{L"a", L"b"}, {}}, {{L"A"}, {}}, kOnlyHere), (States{kSame, kOnlyHere}));
}

TEST(RowStates, TheExemptNameIsComparedExactly) {
    const RowTexts own = {{L"None", L"none"}, {L"1", L"2"}};
    EXPECT_EQ(RowStates(own, {}, kOnlyHere, L"None"), (States{kSame, kOnlyHere}));
    EXPECT_EQ(RowStates(own, {{L"None"}, {L"x"}}, kOnlyHere, L"None"), (States{kSame, kDifferent}));
    EXPECT_EQ(RowStates(own, {}, kOnlyHere), States(2, kOnlyHere));
}

}  // namespace
