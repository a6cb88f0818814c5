#include "workflow/elapsed.h"

#include <limits>
#include <tuple>

#include <gtest/gtest.h>

#include "resources/string_table.h"
#include "tests/support/comma_locale.h"

namespace {

class Elapsed : public testing::Test {
protected:
    Elapsed() { resources::install(); }
    ~Elapsed() override { resources::uninstall(); }
};

TEST_F(Elapsed, ReadsAsMillisecondsBelowASecondAndAsSecondsFromThere) {
    const std::tuple<std::uint64_t, std::uint64_t, const wchar_t*> rows[] = {
        {0, 0, L" in 0 milliseconds"},        {5, 6, L" in 1 milliseconds"},
        {0, 999, L" in 999 milliseconds"},    {0, 1000, L" in 1.00 seconds"},
        {500, 1500, L" in 1.00 seconds"},     {0, 1004, L" in 1.00 seconds"},
        {0, 1006, L" in 1.01 seconds"},       {0, 59999, L" in 60.00 seconds"},
        {0, 3600000, L" in 3600.00 seconds"},
    };
    for (const auto& [start, end, text] : rows) {
        EXPECT_EQ(workflow::FormatElapsed(start, end), text) << end - start;
    }
}

TEST_F(Elapsed, SecondsAreDividedInSinglePrecision) {
    // Double precision would give 987654.32.
    EXPECT_EQ(workflow::FormatElapsed(0, 16777217), L" in 16777.22 seconds");
    EXPECT_EQ(workflow::FormatElapsed(0, 123456789), L" in 123456.79 seconds");
    EXPECT_EQ(workflow::FormatElapsed(0, 987654321), L" in 987654.31 seconds");
}

TEST_F(Elapsed, ALocaleWithAnotherPointChangesNothing) {
    const support::CommaLocale comma;
    if (!comma.active()) {
        GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: no locale with a decimal comma can be made "
                        "(package locales)";
    }
    EXPECT_EQ(workflow::FormatElapsed(0, 3600000), L" in 3600.00 seconds");
    EXPECT_EQ(workflow::FormatElapsed(0, 999), L" in 999 milliseconds");
}

TEST_F(Elapsed, TheDifferenceIsUnsigned) {
    // An end before the start wraps around; the text is long, and nothing breaks.
    const std::wstring text = workflow::FormatElapsed(1, 0);
    EXPECT_EQ(text.rfind(L" in 1844674", 0), 0U) << std::string(text.begin(), text.end());
    EXPECT_EQ(text.substr(text.size() - 11), L".00 seconds");
}

TEST_F(Elapsed, AWrappedCounterStillCounts) {
    const std::uint64_t nearEnd = std::numeric_limits<std::uint64_t>::max() - 9;
    EXPECT_EQ(workflow::FormatElapsed(nearEnd, 90), L" in 100 milliseconds");
}

}  // namespace
