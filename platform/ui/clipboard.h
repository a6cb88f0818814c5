#pragma once

#include <string>

namespace ui {

/// The desktop's clipboard. User-interface thread.
class Clipboard {
public:
    virtual ~Clipboard();
    /// Replaces what the clipboard holds by one Unicode text. False when it can't be opened,
    /// emptied or filled; what it then holds is not said. It is never left open.
    virtual bool setText(const std::wstring& text) = 0;
};

}  // namespace ui
