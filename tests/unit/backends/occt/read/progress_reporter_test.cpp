#include "backends/occt/read/progress_reporter.h"

#include <gtest/gtest.h>

#include "platform/os/helper_messages.h"

namespace {

/// Keeps what the helper sends.
class Recorder : public os::ParentChannel {
public:
    void send(const std::string& line) override {
        const auto message = os::parseHelperMessage(line);
        ASSERT_TRUE(message) << line;
        messages.push_back(*message);
    }
    std::vector<os::HelperMessage> messages;
};

TEST(ProgressReporter, PhasesShareTheWhole) {
    Recorder host;
    occt::ProgressReporter reporter(host);
    reporter.beginPhase("reading", 0.4);
    reporter.report(0.5);
    reporter.beginPhase("writing", 1.0);
    reporter.report(0.5);
    reporter.report(1.0);
    const std::pair<const char*, double> expected[] = {
        {"reading", 0.0}, {"reading", 0.2}, {"writing", 0.4}, {"writing", 0.7}, {"writing", 1.0}};
    ASSERT_EQ(host.messages.size(), std::size(expected));
    for (std::size_t i = 0; i < host.messages.size(); ++i) {
        EXPECT_EQ(host.messages[i].kind, os::HelperMessage::Kind::Progress);
        EXPECT_EQ(host.messages[i].name, expected[i].first);
        EXPECT_NEAR(host.messages[i].fraction, expected[i].second, 1e-9);
    }
}

TEST(ProgressReporter, StepsThatNobodySeesAreNotSent) {
    Recorder host;
    occt::ProgressReporter reporter(host);
    reporter.beginPhase("reading", 1.0);
    for (int i = 0; i <= 100'000; ++i) reporter.report(i / 100'000.0);
    EXPECT_LE(host.messages.size(), 210U);
    EXPECT_GE(host.messages.size(), 190U);
}

TEST(ProgressReporter, ProgressNeverGoesBackwards) {
    Recorder host;
    occt::ProgressReporter reporter(host);
    reporter.beginPhase("reading", 0.5);
    for (const double position : {0.9, 0.1, -3.0, 7.0, 0.0}) reporter.report(position);
    reporter.beginPhase("back", 0.2);
    reporter.report(1.0);
    reporter.beginPhase("beyond", 9.0);
    reporter.report(1.0);
    double last = 0.0;
    for (const auto& message : host.messages) {
        EXPECT_GE(message.fraction, last);
        last = message.fraction;
    }
    EXPECT_EQ(last, 1.0);
}

}  // namespace
