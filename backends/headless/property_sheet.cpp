#include "backends/headless/property_sheet.h"

namespace headless {

Dialog* PropertySheet::addPage(const ui::DialogTemplate& shape, const std::wstring& caption,
                               ui::DialogEvents& events) {
    auto page = std::make_unique<Dialog>(shape, toolkit_);
    page->setCaption(caption);
    pages_.push_back({std::move(page), &events});
    return pages_.back().dialog.get();
}

void PropertySheet::activate(ui::Dialog& page) {
    for (Page& own : pages_) {
        if (own.dialog.get() != &page) continue;
        own.dialog->createModeless(*own.events);
        active_ = own.dialog.get();
    }
}

void PropertySheet::pressOk() {
    for (Page& page : pages_) {
        if (page.dialog->hasWindow()) page.events->onOk();
    }
    cancel();
}

void PropertySheet::cancel() {
    for (Page& page : pages_) page.dialog->destroyWindow();
    active_ = nullptr;
}

}  // namespace headless
