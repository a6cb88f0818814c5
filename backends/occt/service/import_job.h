#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "backends/occt/import_service.h"
#include "backends/occt/model.h"
#include "platform/os/child_process.h"

namespace occt {

/// One import of one file in a helper process, shared by all that want the same. The helper ends
/// with the last of them. Safe from any thread; nothing here waits longer than one line of the
/// helper's takes.
class ImportJob {
public:
    enum class State { Running, Done, Failed, Canceled };

    /// Starts at once; a start that fails shows in the state.
    ImportJob(std::string path, const std::string& options, ImportObserver observer);

    /// State now. Reads what the helper sent, and tells the observer on the calling thread.
    State poll();
    /// Waits until the helper sent something, ended, or `timeoutMs` have passed.
    void wait(std::uint32_t timeoutMs);
    /// Ends a running helper; the state becomes Canceled.
    void cancel();

    /// Share that is done; never goes backwards.
    float fraction() const { return fraction_; }
    /// Folder of the document after Done.
    const std::string& folder() const { return folder_; }
    /// After Failed or Canceled.
    HPS::Exchange::ImportCause cause() const;
    /// The model after Done, loaded on the first call; null when that fails, and the state is
    /// Failed from then on.
    std::shared_ptr<const Model> model();

private:
    void start(const std::string& options);
    void drain();
    void take(const std::string& line);
    void conclude(os::ProcessEnd end);
    void fail(const std::string& code, const std::string& text);

    std::string path_;
    ImportObserver observer_;
    mutable std::mutex mutex_;
    std::shared_ptr<os::ChildProcess> process_;
    std::string folder_;
    std::string phase_ = "starting";
    State state_ = State::Running;
    std::atomic<float> fraction_ = 0.0F;
    HPS::Exchange::ImportCause cause_;
    std::shared_ptr<const Model> model_;
};

}  // namespace occt
