#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace support {

/// What happened, in order, across all fakes that share it. Safe from any thread.
class CallLog {
public:
    void add(const std::string& entry) {
        const std::lock_guard lock(mutex_);
        entries_.push_back(entry);
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        entries_.clear();
    }
    std::vector<std::string> entries() const {
        const std::lock_guard lock(mutex_);
        return entries_;
    }
    /// Entries that begin with `prefix`, in order.
    std::vector<std::string> withPrefix(const std::string& prefix) const {
        std::vector<std::string> found;
        for (const std::string& entry : entries()) {
            if (entry.rfind(prefix, 0) == 0) found.push_back(entry);
        }
        return found;
    }
    bool contains(const std::string& entry) const { return position(entry) >= 0; }
    /// Index of the first such entry, -1 without one.
    int position(const std::string& entry) const {
        const auto all = entries();
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i] == entry) return static_cast<int>(i);
        }
        return -1;
    }
    std::size_t count(const std::string& prefix) const { return withPrefix(prefix).size(); }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> entries_;
};

using Log = std::shared_ptr<CallLog>;

}  // namespace support
