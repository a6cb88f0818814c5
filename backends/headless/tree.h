#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "platform/ui/tree_control.h"

namespace headless {

/// A tree control that is never painted. Remembers what a test wants to ask about painting.
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

    /// False between setRedraw(false) and setRedraw(true).
    bool redraws() const { return redraw_; }
    /// How often the whole control was asked to repaint.
    int invalidations() const { return invalidations_; }

private:
    struct Node {
        ui::TreeItemData data;
        Node* firstChild = nullptr;
        Node* lastChild = nullptr;
        Node* next = nullptr;
    };

    std::deque<Node> nodes_;  // addresses are the handles, so they must never move
    Node top_;
    bool redraw_ = true;
    int invalidations_ = 0;
};

}  // namespace headless
