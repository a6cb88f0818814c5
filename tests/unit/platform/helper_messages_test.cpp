#include "platform/os/helper_messages.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <sstream>

#include "tests/support/comma_locale.h"

namespace {

using Kind = os::HelperMessage::Kind;

void expectRoundTrip(const os::HelperMessage& message) {
    const std::string line = os::formatHelperMessage(message);
    EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos);
    const auto parsed = os::parseHelperMessage(line);
    ASSERT_TRUE(parsed.has_value()) << line;
    EXPECT_EQ(parsed->kind, message.kind);
    EXPECT_EQ(parsed->fraction, message.fraction);
    EXPECT_EQ(parsed->name, message.name);
    EXPECT_EQ(parsed->text, message.text);
}

TEST(HelperMessages, EveryKindComesBack) {
    for (const Kind kind :
         {Kind::Progress, Kind::Warning, Kind::Partial, Kind::Failure, Kind::Result}) {
        expectRoundTrip({kind, 0.25, "name", "text"});
    }
}

TEST(HelperMessages, SpecialCharactersComeBack) {
    expectRoundTrip({Kind::Result, 0.0, "a\tb\\c\nd\re", "\t\t\\t\\\\n\n"});
    expectRoundTrip({Kind::Result, 0.0, "\\", "\\"});
    expectRoundTrip({Kind::Result, 0.0, "", ""});
    expectRoundTrip({Kind::Warning, 0.0, "Z\xC3\xBCndspule", "\xFF\xFE"});
    expectRoundTrip({Kind::Warning, 0.0, std::string("a\0b", 3), std::string("\0", 1)});
}

TEST(HelperMessages, FractionsComeBackExactly) {
    for (const double fraction : {0.0, 1.0, 0.1, 1.0 / 3.0, 5e-324, 1e-7}) {
        expectRoundTrip({Kind::Progress, fraction, "reading", ""});
    }
}

TEST(HelperMessages, AreWrittenInOneForm) {
    EXPECT_EQ(os::formatHelperMessage({Kind::Progress, 0.5, "reading", "x\ty"}),
              "progress\t0.5\treading\tx\\ty");
    EXPECT_EQ(os::formatHelperMessage({Kind::Failure, 0.0, "damaged", "line 3"}),
              "failure\t0\tdamaged\tline 3");
}

TEST(HelperMessages, LocaleChangesNothing) {
    const support::CommaLocale comma;
    if (!comma.active()) {
        GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: no locale with a decimal comma can be made "
                        "(package locales)";
    }
    // The traps are there: printf and streams write a comma now.
    char half[8] = {};
    std::snprintf(half, sizeof half, "%.1f", 0.5);
    ASSERT_STREQ(half, "0,5");
    std::ostringstream stream;
    stream << 1000.5;
    ASSERT_EQ(stream.str(), "1.000,5");
    EXPECT_EQ(os::formatHelperMessage({Kind::Progress, 0.5, "", ""}), "progress\t0.5\t\t");
    EXPECT_TRUE(os::parseHelperMessage("progress\t0.5\t\t").has_value());
    EXPECT_FALSE(os::parseHelperMessage("progress\t0,5\t\t").has_value());
}

class DamagedLine : public testing::TestWithParam<std::string> {};

TEST_P(DamagedLine, IsNoMessage) {
    EXPECT_FALSE(os::parseHelperMessage(GetParam()).has_value());
}

INSTANTIATE_TEST_SUITE_P(HelperMessages, DamagedLine,
                         testing::Values("", "progress", "progress\t0.5", "progress\t0.5\tname",
                                         "progress\t0.5\tname\ttext\tmore",
                                         "unknown\t0\tname\ttext", "Progress\t0\tname\ttext",
                                         "progress\t\tname\ttext", "progress\tx\tname\ttext",
                                         "progress\t0.5x\tname\ttext", "progress\t-0.1\tname\ttext",
                                         "progress\t1.1\tname\ttext", "progress\tnan\tname\ttext",
                                         "progress\tinf\tname\ttext", "progress\t 0.5\tname\ttext",
                                         "\tprogress\t0.5\tname", "\t\t\t"));

TEST(HelperMessages, RandomBytesNeverCrash) {
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        std::string line = i % 2 == 0 ? std::string() : "result\t0\tname\ttext";
        for (auto n = random() % 12; n > 0; --n) {
            const auto place =
                line.begin() + static_cast<std::ptrdiff_t>(random() % (line.size() + 1));
            line.insert(place, "\t\\\n01e.prx"[random() % 10]);
        }
        const auto parsed = os::parseHelperMessage(line);
        if (!parsed) continue;
        expectRoundTrip(*parsed);
    }
}

}  // namespace
