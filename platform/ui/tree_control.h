#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/ui/colour.h"

namespace ui {

/// Item of a tree control; null for none.
using TreeItem = void*;

struct TreeItemData {
    std::wstring text;
    /// Whatever the owner of the tree wants to find again at the item.
    void* data = nullptr;
    bool expanded = false;
    /// Shows the mark of an item with children even while it has none.
    bool hasChildren = false;
};

/// A vertical scroll bar of a tree, counted in items that no closed item hides.
struct ScrollRange {
    int position = 0;
    int last = 0;  ///< greatest position that can be reached
    int page = 0;  ///< items that fit into the control
};

struct TreeStyle {
    bool border = false;
    bool buttons = false;
    bool lines = false;
    bool linesAtRoot = false;
    bool showSelectionAlways = false;
    bool fullRowSelect = false;
    bool doubleBuffer = false;
};

/// A tree of texts. Belongs to the user-interface thread.
///
/// The operations with a body have the answers of a tree that is only filled: it opens and closes
/// nothing and has no scroll bar.
class TreeControl {
public:
    virtual ~TreeControl();
    virtual void setRedraw(bool on) = 0;
    virtual void deleteAllItems() = 0;
    /// Inserts as the last child of `parent`, or as the last item of the top level when null.
    virtual TreeItem insertLast(TreeItem parent, const TreeItemData& item) = 0;
    virtual std::size_t itemCount() const = 0;
    /// Repaints the whole control when it comes to it.
    virtual void invalidate() = 0;

    /// First top-level item, first child, next sibling; null at the end.
    virtual TreeItem firstChild(TreeItem parent) const = 0;
    virtual TreeItem nextSibling(TreeItem item) const = 0;
    virtual const TreeItemData& item(TreeItem item) const = 0;

    virtual void setStyle(const TreeStyle&) {}
    virtual void setColours(Colour /*text*/, Colour /*background*/) {}

    /// Opens or closes an item. The owner's events hear of it when that changed something.
    virtual void expand(TreeItem /*item*/, bool /*open*/) {}

    /// The vertical bar; empty when the tree has none now.
    virtual std::optional<ScrollRange> verticalScroll() const { return std::nullopt; }
    /// Moves the bar's thumb and nothing else: the items stay where they are.
    virtual void setScrollPosition(int /*position*/) {}
    /// Scrolls the items to a position as if the bar's thumb had been dropped there, as far as
    /// there is anything to see. The owner's events hear of it.
    virtual void dropThumb(std::uint16_t /*position*/) {}
};

}  // namespace ui
