#pragma once

#include <optional>
#include <string>

#include "backends/headless/desktop.h"
#include "backends/headless/toolkit.h"

namespace cli {

/// The results dialog as the user of a screen would work with it: by its controls alone.
class ResultsWindow {
public:
    /// Of the window that stands topmost. `toolkit` outlives this.
    explicit ResultsWindow(const headless::Toolkit& toolkit) : toolkit_(toolkit) {}

    /// Opens the section of the two trees, which builds them.
    void openStructure() const;
    /// Opens the attributes of each part in place of those of the files.
    void openParts() const;
    /// Presses Copy; what the clipboard then holds. Empty when that failed.
    std::optional<std::wstring> copy(const headless::Clipboard& clipboard) const;
    /// Presses Save. False when there is no such button to press; whether a report was saved is
    /// told in the status bar.
    bool save() const;

private:
    headless::Dialog* window() const;

    const headless::Toolkit& toolkit_;
};

/// Whether this status text says that a report was saved, in the user's language.
bool saysThatAReportWasSaved(const std::wstring& statusText);

}  // namespace cli
