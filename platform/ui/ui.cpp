#include "platform/ui/services.h"

ui::DialogEvents::~DialogEvents() = default;
ui::Dialog::~Dialog() = default;
ui::TreeControl::~TreeControl() = default;
ui::Toolkit::~Toolkit() = default;

ui::Services& ui::services() {
    static Services installed;
    return installed;
}
