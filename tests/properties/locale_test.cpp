#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/properties/runs.h"
#include "tests/support/real_data.h"

namespace {

/// Compiles a locale of the system's sources into `folder`; false when the machine has none.
bool makeLocale(const std::string& language, const std::filesystem::path& folder) {
    if (!std::filesystem::exists("/usr/share/i18n/locales/" + language)) return false;
    support::CliRequest request;
    request.arguments = {"--no-archive",
                         "-c",
                         "-i",
                         language,
                         "-f",
                         "UTF-8",
                         (folder / (language + ".UTF-8")).string()};
    return support::runProgram("/usr/bin/localedef", request).exitCode == 0;
}

/// A run that really uses the locale: the C library finds it below LOCPATH.
support::CliRequest in(const std::string& locale, const std::filesystem::path& folder) {
    support::CliRequest request;
    request.environment = {{"LANG", locale}, {"LC_ALL", locale}, {"LOCPATH", folder.string()}};
    return request;
}

class Locale : public testing::TestWithParam<support::RealPair> {};

}  // namespace

TEST_P(Locale, ChangesNothingInTheOutput) {
    const std::string reference = support::realFile(GetParam().reference);
    const std::string compare = support::realFile(GetParam().compare);
    SKIP_UNLESS_THERE(!reference.empty());
    SKIP_UNLESS_FULL(GetParam().small);
    const support::ScratchFolder scratch;
    for (const char* language : {"de_DE", "tr_TR"}) {
        if (!makeLocale(language, scratch.path())) {
            GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: this machine has no sources for the "
                            "locale "
                         << language << " (package locales)";
        }
    }
    properties::Compared english;
    properties::compareFiles(reference, compare, english, in("C", scratch.path()));
    if (HasFatalFailure()) return;
    for (const char* locale : {"de_DE.UTF-8", "tr_TR.UTF-8"}) {
        properties::Compared other;
        properties::compareFiles(reference, compare, other, in(locale, scratch.path()));
        if (HasFatalFailure()) return;
        EXPECT_EQ(other.run.exitCode, english.run.exitCode) << locale;
        EXPECT_EQ(other.run.standardOutput, english.run.standardOutput) << locale;
        EXPECT_EQ(other.run.standardError, english.run.standardError) << locale;
    }
}

namespace {

std::vector<support::RealPair> comparedPairs() {
    std::vector<support::RealPair> chosen;
    for (const auto& pair : support::stepPairs()) {
        if (pair.compares) chosen.push_back(pair);
    }
    return chosen;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(RealPairs, Locale, testing::ValuesIn(comparedPairs()),
                         [](const testing::TestParamInfo<support::RealPair>& test) {
                             return std::string(test.param.label);
                         });
