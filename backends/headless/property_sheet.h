#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backends/headless/dialog.h"
#include "platform/ui/property_sheet.h"

namespace headless {

/// A settings sheet without a screen.
class PropertySheet final : public ui::PropertySheet {
public:
    /// `toolkit` outlives the sheet.
    explicit PropertySheet(Toolkit& toolkit) : toolkit_(toolkit) {}

    Dialog* addPage(const ui::DialogTemplate& shape, const std::wstring& caption,
                    ui::DialogEvents& events) override;
    Dialog* activePage() const override { return active_; }
    void activate(ui::Dialog& page) override;

    /// The user presses OK: every page that has a window hears of it.
    void pressOk();
    /// The user closes the sheet otherwise: no page hears of it.
    void cancel();

    std::size_t pageCount() const { return pages_.size(); }
    Dialog& page(std::size_t index) { return *pages_.at(index).dialog; }

private:
    struct Page {
        std::unique_ptr<Dialog> dialog;
        ui::DialogEvents* events = nullptr;
    };

    Toolkit& toolkit_;
    std::vector<Page> pages_;
    Dialog* active_ = nullptr;
};

}  // namespace headless
