#pragma once

#include <optional>
#include <string>

namespace ui {

struct SaveFileOptions {
    /// Added to a name without an extension; without a dot.
    std::wstring defaultExtension;
    std::wstring suggestedName;
    /// Asks before it gives a file that exists.
    bool overwritePrompt = false;
    /// Description, bar, pattern, bar, ... The first entry is chosen at first.
    std::wstring filter;
};

/// The desktop's dialogs for files. User-interface thread.
class FileChooser {
public:
    virtual ~FileChooser();
    /// Asks where to save. Empty when the user did not confirm.
    virtual std::optional<std::wstring> chooseSaveFile(const SaveFileOptions& options) = 0;
};

}  // namespace ui
