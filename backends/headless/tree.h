#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "platform/ui/dialog_events.h"
#include "platform/ui/tree_control.h"

namespace headless {

/// A tree control that is never painted: items open and close, and a scroll bar counts those that
/// no closed item hides. Below the operations of ui::TreeControl stand those of the user and of
/// tests.
class Tree final : public ui::TreeControl {
public:
    void setRedraw(bool on) override { redraw_ = on; }
    void deleteAllItems() override;
    /// A parent of another tree, or one that was deleted, must not be given.
    ui::TreeItem insertLast(ui::TreeItem parent, const ui::TreeItemData& item) override;
    std::size_t itemCount() const override { return nodes_.size(); }
    void invalidate() override { ++invalidations_; }
    ui::TreeItem firstChild(ui::TreeItem parent) const override;
    ui::TreeItem nextSibling(ui::TreeItem item) const override;
    const ui::TreeItemData& item(ui::TreeItem item) const override;
    void setStyle(const ui::TreeStyle& style) override { style_ = style; }
    void setColours(ui::Colour text, ui::Colour background) override;
    void expand(ui::TreeItem item, bool open) override;
    std::optional<ui::ScrollRange> verticalScroll() const override;
    void setScrollPosition(int position) override;
    void dropThumb(std::uint16_t position) override;

    /// The user drags the vertical bar, turns the wheel (positive: towards the end), or presses
    /// an arrow or page key that scrolls by so many items.
    void dragVertically(int position);
    void turnWheel(int notches);
    void pressKey(int scrolledItems);

    /// Told by the dialog.
    void resize(int heightPx);
    std::function<void(ui::ScrollBy)> onScrolled;
    std::function<void(ui::TreeItem, bool)> onExpanded;

    /// Items that no closed item hides.
    std::size_t visibleItems() const;
    /// The item at the top edge, which setScrollPosition() alone does not change.
    int topItem() const { return top_; }
    const ui::TreeStyle& style() const { return style_; }
    ui::Colour textColour() const { return textColour_; }
    ui::Colour backgroundColour() const { return backgroundColour_; }
    /// False between setRedraw(false) and setRedraw(true).
    bool redraws() const { return redraw_; }
    /// How often the whole control was asked to repaint.
    int invalidations() const { return invalidations_; }

private:
    struct Node {
        ui::TreeItemData data;
        Node* parent = nullptr;
        Node* firstChild = nullptr;
        Node* lastChild = nullptr;
        Node* next = nullptr;
    };

    int pageItems() const;
    void scrollTo(int position, ui::ScrollBy by);
    static const Node* afterInDisplay(const Node* node);

    std::deque<Node> nodes_;  // addresses are the handles, so they must never move
    Node topLevel_;
    ui::TreeStyle style_;
    ui::Colour textColour_ = 0;
    ui::Colour backgroundColour_ = 0;
    int heightPx_ = 0;
    int top_ = 0;
    int thumb_ = 0;
    bool redraw_ = true;
    int invalidations_ = 0;
};

}  // namespace headless
