#include "backends/posix/debug_output.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "backends/posix/io.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using posix_test::ScopedVariable;

TEST(DebugOutput, WritesUtf8AsItStandsWithoutLineFeed) {
    posix::StderrDebugOutput debug(true);
    testing::internal::CaptureStderr();
    debug.write(L"Zahnrad \u00e4\u2014\U0001F600");
    debug.write(L"!");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Zahnrad \xC3\xA4\xE2\x80\x94\xF0\x9F\x98\x80!");
}

TEST(DebugOutput, IsSilentUnlessWanted) {
    posix::StderrDebugOutput debug(false);
    testing::internal::CaptureStderr();
    debug.write(L"secret");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(DebugOutput, IsWantedWhenTheVariableHoldsSomething) {
    {
        const ScopedVariable unset("BEXTORA_DEBUG", std::nullopt);
        EXPECT_FALSE(posix::debugWanted());
    }
    {
        const ScopedVariable empty("BEXTORA_DEBUG", "");
        EXPECT_FALSE(posix::debugWanted());
    }
    const ScopedVariable set("BEXTORA_DEBUG", "1");
    EXPECT_TRUE(posix::debugWanted());
}

TEST(DebugOutput, KeepsTextsOfSeveralThreadsWhole) {
    posix::StderrDebugOutput debug(true);
    testing::internal::CaptureStderr();
    std::vector<std::thread> threads;
    for (const wchar_t c : {L'a', L'b', L'c'}) {
        threads.emplace_back([&debug, c] {
            for (int i = 0; i < 50; ++i) debug.write(std::wstring(200, c) + L'\n');
        });
    }
    for (std::thread& thread : threads) thread.join();
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(text.size(), 3U * 50U * 201U);
    for (std::size_t i = 0; i < text.size(); i += 201) {
        ASSERT_EQ(text.substr(i, 201), std::string(200, text[i]) + '\n');
    }
}

}  // namespace
