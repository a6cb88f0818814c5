#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/ui/painter.h"
#include "platform/ui/tree_control.h"

namespace ui {

enum class ControlKind {
    GroupBox,
    FileEdit,
    StaticText,
    PushButton,
    DefaultButton,
    CheckBox,
    RadioButton,
    List,
    ListBox,
    Tree,
};

/// What the user did to scroll.
enum class ScrollBy { VerticalBar, HorizontalBar, Wheel, Key };

enum class Key { Escape, Cancel, Other };

/// How a control paints what is its own.
struct ControlColours {
    Colour background = 0;
    Colour text = 0;
    int weight = kNormalWeight;
};

/// What happens in a dialog. All calls come on the user-interface thread.
class DialogEvents {
public:
    virtual ~DialogEvents();
    /// The controls exist, nothing is shown yet.
    virtual void onInitDialog() {}
    /// The user (not setText()) changed the text of a control.
    virtual void onTextChanged(int /*controlId*/) {}
    /// A button was pressed; a check box has changed before.
    virtual void onClicked(int /*controlId*/) {}
    /// The close box or Esc. The default of a modal dialog is to end with kCancelled.
    virtual void onCancel() {}
    /// OK of the sheet that this dialog is a page of.
    virtual void onOk() {}
    /// A key was pressed anywhere in the dialog. True keeps it from everybody else.
    virtual bool onKeyDown(Key /*key*/) { return false; }

    /// The client area has another size; controls with anchors have moved.
    virtual void onResized(PixelSize /*client*/) {}
    /// The client area, without its controls, is to be drawn whole.
    virtual void onPaint(Painter& /*painter*/, PixelSize /*client*/) {}
    /// The left mouse button went down on the dialog itself.
    virtual void onMouseDown(PixelPoint /*point*/) {}
    /// A control is about to paint itself in those colours, 0 being the dialog itself. What is
    /// returned is what it paints in.
    virtual ControlColours onColours(int /*controlId*/, ControlKind /*kind*/,
                                     const ControlColours& own) {
        return own;
    }

    /// The user selected another text of a list box.
    virtual void onSelectionChanged(int /*listBoxId*/) {}
    /// A list box wants one of its items drawn.
    virtual void onPaintListBoxItem(int /*listBoxId*/, std::size_t /*position*/,
                                    const PixelRect& /*area*/, bool /*selected*/,
                                    Painter& /*painter*/) {}

    /// A list paints a row and asks for its colours by the row's number; for every visible row
    /// in every paint cycle.
    virtual ItemColours onPaintRow(int /*listId*/, std::int32_t /*rowData*/) { return {}; }
    /// The user clicked into a list; -1 when no row was hit.
    virtual void onRowClicked(int /*listId*/, int /*row*/) {}
    /// The user scrolled a list or a tree, or a program dropped a tree's thumb. Whether the
    /// position changed is not said.
    virtual void onScrolled(int /*controlId*/, ScrollBy /*by*/) {}

    /// A tree paints an item and asks for its colours; for every item in every paint cycle.
    virtual ItemColours onPaintItem(int /*treeId*/, const TreeItemData& /*item*/) { return {}; }
    /// An item was opened or closed, by the user or by a program.
    virtual void onExpanded(int /*treeId*/, TreeItem /*item*/, bool /*open*/) {}
};

}  // namespace ui
