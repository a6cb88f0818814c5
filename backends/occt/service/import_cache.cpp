#include "backends/occt/service/import_cache.h"

#include <filesystem>
#include <system_error>

#include "backends/occt/options_text.h"

namespace occt {
namespace {

/// Equal for the same content of the same file, however it is called.
std::string fileKey(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path canonical = fs::weakly_canonical(path, error);
    std::string key = error ? path : canonical.string();
    const auto size = fs::file_size(path, error);
    key += '\n' + std::to_string(error ? 0 : size);
    const auto time = fs::last_write_time(path, error);
    key += '\n' + std::to_string(error ? 0 : time.time_since_epoch().count());
    return key;
}

bool hasGeometry(const std::string& options) {
    const auto read = parseOptions(options);
    return read && read->solids && read->surfaces &&
           read->brepMode != HPS::Exchange::BRepMode::TessellationOnly;
}

}  // namespace

std::shared_ptr<ImportJob> ImportCache::find(const std::string& file, const std::string& options) {
    const auto entries = entries_.find(file);
    if (entries == entries_.end()) return nullptr;
    const auto entry = entries->second.find(options);
    if (entry == entries->second.end()) return nullptr;
    const auto job = entry->second.kept ? entry->second.kept : entry->second.job.lock();
    if (!job) return nullptr;
    const ImportJob::State state = job->poll();
    const bool usable = state == ImportJob::State::Running || state == ImportJob::State::Done;
    if (!usable) entries->second.erase(entry);
    return usable ? job : nullptr;
}

std::shared_ptr<ImportJob> ImportCache::get(const std::string& path,
                                            const HPS::Exchange::ImportOptions& options) {
    const std::string text = formatOptions(options);
    const std::string file = fileKey(path);
    const std::lock_guard lock(mutex_);
    if (auto job = find(file, text)) return job;
    auto job = std::make_shared<ImportJob>(path, text, observer_);
    entries_[file][text] = {job, nullptr};
    return job;
}

std::shared_ptr<ImportJob> ImportCache::getWithGeometry(const std::string& path) {
    {
        const std::string file = fileKey(path);
        const std::lock_guard lock(mutex_);
        std::vector<std::string> candidates;
        for (const auto& [options, entry] : entries_[file]) {
            if (hasGeometry(options)) candidates.push_back(options);
        }
        for (const std::string& options : candidates) {
            if (auto job = find(file, options)) return job;
        }
    }
    return get(path, {});
}

void ImportCache::cancelAll() {
    std::vector<std::shared_ptr<ImportJob>> running;
    {
        const std::lock_guard lock(mutex_);
        for (auto& [file, entries] : entries_) {
            for (auto& [options, entry] : entries) {
                if (auto job = entry.job.lock()) running.push_back(std::move(job));
            }
        }
    }
    for (const auto& job : running) job->cancel();
}

void ImportCache::keep(const std::shared_ptr<ImportJob>& job) {
    const std::lock_guard lock(mutex_);
    for (auto& [file, entries] : entries_) {
        for (auto& [options, entry] : entries) {
            if (entry.job.lock() == job) entry.kept = job;
        }
    }
}

}  // namespace occt
