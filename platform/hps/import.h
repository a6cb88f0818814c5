#pragma once

#include <memory>
#include <string>

#include "platform/hps/component.h"
#include "platform/hps/import_options.h"

namespace HPS {

/// State of an asynchronous operation.
enum class IOResult : int {
    Success = 0,
    Failure = 1,
    InProgress = 2,
    FileNotFound = 4,
    Canceled = 11,
    TimedOut = 12,
};

namespace Exchange {

/// Why an import failed. Travels with the notifier for the host's log.
struct ImportCause {
    std::string code;  ///< "missing", "unreadable", "not-this-format", "damaged", "too-large",
                       ///< "crashed", "time-limit", "memory-limit", "cancelled", "no-space", ...
    std::string text;  ///< one UTF-8 sentence that names the file and the cause
};

/// One import under way or finished; what stands behind ImportNotifier.
/// Called from the thread that started the import.
class ImportTask {
public:
    virtual ~ImportTask() = default;
    /// State now, without blocking; `fraction` in [0, 1] never goes backwards.
    virtual IOResult status(float& fraction) = 0;
    /// The model after Success; null otherwise.
    virtual std::shared_ptr<const ComponentProvider> model() = 0;
    /// The cause after a failure; empty otherwise.
    virtual ImportCause cause() const = 0;
    /// Ends the import at once; the state becomes Canceled unless it had already ended.
    virtual void cancel() = 0;
};

}  // namespace Exchange

/// Handle to an asynchronous operation.
class IONotifier {
public:
    IONotifier() = default;
    explicit IONotifier(std::shared_ptr<Exchange::ImportTask> task) : task_(std::move(task)) {}

    /// Current state; Failure for a handle that refers to nothing.
    IOResult Status(float& fraction) const;

    bool Empty() const { return !task_; }

protected:
    std::shared_ptr<Exchange::ImportTask> task_;
};

namespace Exchange {

/// Handle to an import. Copies refer to the same import, and the last one to go ends it.
class ImportNotifier : public IONotifier {
public:
    using IONotifier::IONotifier;

    /// The imported model; empty unless the import succeeded.
    CADModel GetCADModel() const;

    ImportCause GetCause() const;
    void Cancel() const;
};

class File {
public:
    /// Starts to import a file and returns at once. `path` is UTF-8. Every failure, also that to
    /// start at all, shows in the notifier. Throws HPS::Exception when no importer is installed.
    static ImportNotifier Import(const char* path, const ImportOptionsKit& options);
};

}  // namespace Exchange
}  // namespace HPS
