#pragma once

#include <string>

#include <Message_ProgressIndicator.hxx>

#include "platform/os/child_process.h"

namespace occt {

/// Tells the host how far a helper is. Phases have fixed shares of the whole; what is reported
/// never goes backwards.
class ProgressReporter {
public:
    explicit ProgressReporter(os::ParentChannel& channel) : channel_(channel) {}

    /// Starts a phase that leads up to `end` of the whole.
    void beginPhase(const std::string& name, double end);

    /// Reports a position within the phase, in [0, 1].
    void report(double position);

private:
    os::ParentChannel& channel_;
    std::string phase_;
    double begin_ = 0.0;
    double end_ = 0.0;
    double sent_ = -1.0;
};

/// Reports the progress of one Open CASCADE operation as the position within the current phase,
/// or within a share of it that begins at `begin`.
class OcctProgress : public Message_ProgressIndicator {
public:
    explicit OcctProgress(ProgressReporter& reporter, double begin = 0.0, double share = 1.0)
        : reporter_(reporter), begin_(begin), share_(share) {}

protected:
    void Show(const Message_ProgressScope& scope, const Standard_Boolean force) override;

private:
    ProgressReporter& reporter_;
    double begin_;
    double share_;
};

}  // namespace occt
