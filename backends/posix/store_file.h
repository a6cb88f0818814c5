#pragma once

#include <functional>
#include <optional>
#include <string>

#include "backends/posix/ini_document.h"
#include "backends/posix/unique_fd.h"

namespace posix {

/// The file in which a key store lives. Readers always find a whole file: a change goes to a new
/// file that then takes the old one's place, on disk before the call returns. Writers of all
/// processes exclude one another by a lock on `<file>.lock`. Safe from any thread.
class StoreFile {
public:
    /// `path` is a full path; its folder is made at the first change. Empty: a store that holds
    /// nothing and can't be written.
    explicit StoreFile(std::string path);

    /// What the file holds now; an empty document when there is no file. Nothing when it exists
    /// but can't be read: it must not be written then either, or its contents would be lost.
    std::optional<IniDocument> load() const;

    /// True when change() may be expected to work.
    bool writable() const;

    /// Applies `edit` to what the file holds at that moment and stores the outcome. False when
    /// that fails; the old contents then stay.
    bool change(const std::function<void(IniDocument&)>& edit) const;

private:
    UniqueFd lock() const;
    std::string realPath() const;
    bool replace(const std::string& bytes) const;

    const std::string path_;
};

}  // namespace posix
