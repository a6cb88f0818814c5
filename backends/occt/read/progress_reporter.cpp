#include "backends/occt/read/progress_reporter.h"

#include <algorithm>

#include "platform/os/helper_messages.h"

namespace occt {
namespace {

// Finer steps would only fill the channel.
constexpr double kSmallestStep = 0.005;

}  // namespace

void ProgressReporter::beginPhase(const std::string& name, double end) {
    phase_ = name;
    begin_ = end_;
    end_ = std::clamp(end, begin_, 1.0);
    sent_ = -1.0;
    report(0.0);
}

void ProgressReporter::report(double position) {
    const double fraction = begin_ + (end_ - begin_) * std::clamp(position, 0.0, 1.0);
    if (fraction < sent_ + kSmallestStep) return;
    sent_ = fraction;
    channel_.send(os::formatHelperMessage(
        {os::HelperMessage::Kind::Progress, fraction, phase_, std::string()}));
}

void OcctProgress::Show(const Message_ProgressScope&, const Standard_Boolean) {
    reporter_.report(begin_ + share_ * GetPosition());
}

}  // namespace occt
