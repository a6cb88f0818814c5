#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/ui/clipboard.h"
#include "platform/ui/dialog.h"
#include "platform/ui/file_chooser.h"
#include "platform/ui/screen.h"

namespace ui {

/// The toolkit. All operations belong to the user-interface thread.
class Toolkit {
public:
    virtual ~Toolkit();

    /// A dialog of that template; no window exists yet.
    virtual std::unique_ptr<Dialog> createDialog(const DialogTemplate& shape) = 0;

    /// Modal message box over the active window; `style` in the numbering of the desktop that
    /// the texts were written for (0x10 error icon, 0x20 question icon, 0x10000 foreground,
    /// 0x40000 topmost).
    virtual int messageBox(const std::wstring& text, const std::wstring& caption,
                           std::uint32_t style) = 0;

    /// Counted wait cursor: it stays until every begin has met its end.
    virtual void beginWaitCursor() = 0;
    virtual void endWaitCursor() = 0;
    /// Shows the system's wait cursor now, without counting.
    virtual void setWaitCursor() = 0;

    /// Caption of the window that is active now; nothing happens when none is.
    virtual void setActiveWindowCaption(const std::wstring& caption) = 0;
};

/// What the application puts behind this folder's contracts. Everything may be null.
struct Services {
    std::shared_ptr<Toolkit> toolkit;
    std::shared_ptr<Clipboard> clipboard;
    std::shared_ptr<FileChooser> fileChooser;
    std::shared_ptr<Screen> screen;
};

Services& services();

/// The counted wait cursor for as long as this lives. Nothing without a toolkit.
class WaitCursor {
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    std::shared_ptr<Toolkit> toolkit_;
};

}  // namespace ui
