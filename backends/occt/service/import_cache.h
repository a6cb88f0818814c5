#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "backends/occt/service/import_job.h"

namespace occt {

/// Imports by content and options: a file that has not changed is parsed once. Keeps what has
/// ended well; what is still running belongs to those who wait for it. Safe from any thread.
class ImportCache {
public:
    explicit ImportCache(ImportObserver observer) : observer_(std::move(observer)) {}

    /// The import of a file: the one that is there, else a new one. Failed ones are not kept.
    std::shared_ptr<ImportJob> get(const std::string& path,
                                   const HPS::Exchange::ImportOptions& options);

    /// The same for one that reads all solids and surfaces as exact bodies, whatever its other
    /// options are.
    std::shared_ptr<ImportJob> getWithGeometry(const std::string& path);

    /// Ends all that run.
    void cancelAll();

    /// Remembers a job that has ended well.
    void keep(const std::shared_ptr<ImportJob>& job);

private:
    struct Entry {
        std::weak_ptr<ImportJob> job;
        std::shared_ptr<ImportJob> kept;
    };

    std::shared_ptr<ImportJob> find(const std::string& file, const std::string& options);

    ImportObserver observer_;
    std::mutex mutex_;
    std::map<std::string, std::map<std::string, Entry>> entries_;  // by file, then options
};

}  // namespace occt
