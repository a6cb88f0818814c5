#include "platform/ui/property_sheet.h"
#include "platform/ui/services.h"

ui::Painter::~Painter() = default;
ui::ListControl::~ListControl() = default;
ui::ListBox::~ListBox() = default;
ui::TreeControl::~TreeControl() = default;
ui::DialogEvents::~DialogEvents() = default;
ui::DialogSurface::~DialogSurface() = default;
ui::Dialog::~Dialog() = default;
ui::PropertySheet::~PropertySheet() = default;
ui::Clipboard::~Clipboard() = default;
ui::FileChooser::~FileChooser() = default;
ui::Screen::~Screen() = default;
ui::Toolkit::~Toolkit() = default;

ui::Services& ui::services() {
    static Services installed;
    return installed;
}

ui::WaitCursor::WaitCursor() : toolkit_(services().toolkit) {
    if (toolkit_) toolkit_->beginWaitCursor();
}

ui::WaitCursor::~WaitCursor() {
    if (toolkit_) toolkit_->endWaitCursor();
}
