#pragma once

#include <string>

#include "platform/ui/dialog_template.h"
#include "platform/ui/list_box.h"
#include "platform/ui/list_control.h"

namespace ui {

/// Outer style of a window.
struct WindowStyle {
    bool toolWindow = false;  ///< narrow caption, not in the task bar
    bool modalFrame = false;
    bool icons = true;
    bool clipChildren = false;
    bool sizeGrip = true;
};

/// How far a control's left and right edge follow the client area's right edge, and its top and
/// bottom the bottom edge: 0 not at all, 1 all the way.
struct Anchors {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// The part of a dialog that lays itself out: controls made at run time, places, colours,
/// painting. The bodies here are the answers of a dialog without any such control, so that a
/// dialog of edits and buttons alone need not care. Ids that the dialog does not hold are
/// ignored. User-interface thread.
class DialogSurface {
public:
    virtual ~DialogSurface();

    /// Makes a control beyond those of the template, in the way of one of these.
    virtual void addControl(const ControlTemplate&) {}
    /// Null when the control is not of that kind. Both belong to the dialog.
    virtual ListControl* list(int /*controlId*/) { return nullptr; }
    virtual ListBox* listBox(int /*controlId*/) { return nullptr; }

    /// Check boxes and radio buttons. Setting fires no event.
    virtual void setChecked(int /*controlId*/, bool /*checked*/) {}
    virtual bool checked(int /*controlId*/) const { return false; }

    virtual void showControl(int /*controlId*/, bool /*visible*/) {}
    virtual bool controlVisible(int /*controlId*/) const { return false; }
    virtual void placeControl(int /*controlId*/, const PixelRect& /*place*/) {}
    virtual PixelRect controlPlace(int /*controlId*/) const { return {}; }
    virtual void setAnchors(int /*controlId*/, const Anchors&) {}
    /// Gives a control the dialog's font in that weight.
    virtual void setWeight(int /*controlId*/, int /*weight*/) {}

    virtual void setWindowStyle(const WindowStyle&) {}
    /// Least width of the whole window when the user sizes it; the least height is the window's
    /// own.
    virtual void setMinimumWidthPx(int) {}
    /// Moves the whole window without changing the stacking order.
    virtual void placeWindow(const PixelRect&) {}
    virtual PixelRect windowPlace() const { return {}; }
    virtual PixelSize clientSize() const { return {}; }

    /// Width of a text in the dialog's font of that weight.
    virtual int textWidthPx(const std::wstring&, int /*weight*/) const { return 0; }
    /// Repaints a part of the client area when it comes to it, without erasing it.
    virtual void invalidate(const PixelRect&) {}
    /// While off, nothing of the window is painted; turning it on repaints window, frame and
    /// controls.
    virtual void setRedraw(bool) {}
};

}  // namespace ui
