#include "backends/headless/progress.h"

#include <gtest/gtest.h>

namespace {

using headless::Progress;
using std::chrono::milliseconds;

TEST(HeadlessProgress, TakesPerCentAndIgnoresEverythingElse) {
    struct Row {
        int given;
        int shown;
    };
    for (const Row& row : {Row{1, 1}, Row{100, 100}, Row{102, 7}, Row{-1, 7}, Row{0, 0}}) {
        Progress progress;
        progress.begin();
        progress.set(7);
        progress.set(row.given);
        EXPECT_EQ(progress.wait({}, milliseconds(0)).percent, row.shown) << row.given;
        EXPECT_FALSE(progress.wait({}, milliseconds(0)).ended) << row.given;
    }
}

TEST(HeadlessProgress, EndStaysUntilTheNextBegin) {
    Progress progress;
    progress.begin();
    progress.set(101);
    progress.set(0);
    progress.set(50);
    EXPECT_TRUE(progress.wait({}, milliseconds(0)).ended);
    EXPECT_EQ(progress.wait({}, milliseconds(0)).percent, 0);
    progress.begin();
    EXPECT_FALSE(progress.wait({}, milliseconds(0)).ended);
}

TEST(HeadlessProgress, WaitGivesUpWhenNothingChanges) {
    Progress progress;
    progress.begin();
    progress.set(30);
    const Progress::View seen = progress.wait({}, milliseconds(0));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(progress.wait(seen, milliseconds(30)).percent, 30);
    EXPECT_GE(std::chrono::steady_clock::now() - before, milliseconds(30));
}

}  // namespace
