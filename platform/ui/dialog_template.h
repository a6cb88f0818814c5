#pragma once

#include <string>
#include <vector>

#include "platform/ui/dialog_events.h"

namespace ui {

/// Place in dialog units.
struct DialogRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

struct ControlTemplate {
    int id = 0;  ///< -1 for controls that nobody addresses
    ControlKind kind = ControlKind::StaticText;
    DialogRect place;
    std::wstring text;
    bool visible = true;
};

struct DialogTemplate {
    int id = 0;
    std::wstring caption;
    std::wstring font;
    int width = 0;   ///< dialog units
    int height = 0;  ///< dialog units
    std::vector<ControlTemplate> controls;
};

}  // namespace ui
