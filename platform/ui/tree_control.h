#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

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

/// Colours of one item, 0x00BBGGRR.
struct ItemColours {
    bool changed = false;  ///< false: the control's own colours
    std::uint32_t text = 0;
    std::uint32_t background = 0;
};

/// A tree of texts. Belongs to the user-interface thread.
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
};

}  // namespace ui
