#pragma once

#include <string>

#include "platform/ui/dialog.h"

namespace ui {

/// The host's settings sheet: pages of which one is active. A page gets its window, and with it
/// onInitDialog(), when it is first activated. OK reaches the pages that have one. User-interface
/// thread.
class PropertySheet {
public:
    virtual ~PropertySheet();
    /// Adds a page that belongs to the sheet; `events` outlives it. Null when that fails.
    virtual Dialog* addPage(const DialogTemplate& shape, const std::wstring& caption,
                            DialogEvents& events) = 0;
    /// Null without pages, or before the first one was activated.
    virtual Dialog* activePage() const = 0;
    virtual void activate(Dialog& page) = 0;
};

}  // namespace ui
