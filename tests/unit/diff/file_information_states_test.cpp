#include "diff/file_information_states.h"

#include <gtest/gtest.h>

#include "extract/file_information.h"

namespace {

using extract::ItemDiffState;
using States = std::vector<ItemDiffState>;
using Texts = std::vector<std::wstring>;

constexpr auto kSame = ItemDiffState::Unchanged;
constexpr auto kDifferent = ItemDiffState::Different;

States statesOf(const Texts& reference, const Texts& compare) {
    States referenceStates, compareStates;
    diff::CompareFileInformation(reference, compare, referenceStates, compareStates);
    EXPECT_EQ(referenceStates, compareStates);
    return referenceStates;
}

TEST(FileInformationStates, ValuesAreComparedExactly) {
    EXPECT_EQ(statesOf({L"a", L"b", L""}, {L"a", L"B", L""}), (States{kSame, kDifferent, kSame}));
}

TEST(FileInformationStates, TheShorterListDecidesHowManyRowsThereAre) {
    EXPECT_EQ(statesOf({L"a", L"b"}, {L"a"}), (States{kSame}));
    EXPECT_EQ(statesOf({}, {L"a"}), States());
}

TEST(FileInformationStates, AreAppended) {
    States reference = {kDifferent}, compare;
    diff::CompareFileInformation({L"a"}, {L"a"}, reference, compare);
    EXPECT_EQ(reference, (States{kDifferent, kSame}));
    EXPECT_EQ(compare, (States{kSame}));
}

TEST(FileInformationStates, FilesOfOneNameInTwoFoldersDifferInTheirFolder) {
    Texts names, reference, compare;
    extract::AddFileInformation(L"C:\\one\\gear.stp", names, reference);
    extract::AddFileInformation(L"C:\\two\\gear.stp", names, compare);
    EXPECT_EQ(statesOf(reference, compare), (States{kDifferent, kSame, kSame, kSame}));
}

}  // namespace
