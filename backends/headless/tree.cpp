#include "backends/headless/tree.h"

#include <algorithm>

#include "backends/headless/metrics.h"

namespace headless {

void Tree::deleteAllItems() {
    nodes_.clear();
    topLevel_ = Node();
    top_ = thumb_ = 0;
}

ui::TreeItem Tree::insertLast(ui::TreeItem parent, const ui::TreeItemData& item) {
    Node& above = parent ? *static_cast<Node*>(parent) : topLevel_;
    Node& added = nodes_.emplace_back();
    added.data = item;
    added.parent = &above;
    if (above.lastChild) {
        above.lastChild->next = &added;
    } else {
        above.firstChild = &added;
    }
    above.lastChild = &added;
    return &added;
}

ui::TreeItem Tree::firstChild(ui::TreeItem parent) const {
    return parent ? static_cast<const Node*>(parent)->firstChild : topLevel_.firstChild;
}

ui::TreeItem Tree::nextSibling(ui::TreeItem item) const {
    return item ? static_cast<const Node*>(item)->next : nullptr;
}

const ui::TreeItemData& Tree::item(ui::TreeItem item) const {
    return item ? static_cast<const Node*>(item)->data : topLevel_.data;
}

void Tree::setColours(ui::Colour text, ui::Colour background) {
    textColour_ = text;
    backgroundColour_ = background;
}

void Tree::expand(ui::TreeItem item, bool open) {
    if (!item) return;
    Node& node = *static_cast<Node*>(item);
    if (node.data.expanded == open) return;
    node.data.expanded = open;
    if (const auto range = verticalScroll()) {
        top_ = thumb_ = std::min(top_, range->last);
    } else {
        top_ = thumb_ = 0;
    }
    if (onExpanded) onExpanded(item, open);
}

const Tree::Node* Tree::afterInDisplay(const Node* node) {
    if (node->firstChild && node->data.expanded) return node->firstChild;
    while (node && !node->next) node = node->parent;
    return node ? node->next : nullptr;
}

std::size_t Tree::visibleItems() const {
    std::size_t count = 0;
    for (const Node* node = topLevel_.firstChild; node; node = afterInDisplay(node)) ++count;
    return count;
}

int Tree::pageItems() const {
    return std::max(1, heightPx_ / metrics::kTreeItemHeightPx);
}

std::optional<ui::ScrollRange> Tree::verticalScroll() const {
    const int items = static_cast<int>(visibleItems());
    const int page = pageItems();
    if (items <= page) return std::nullopt;
    return ui::ScrollRange{thumb_, items - page, page};
}

void Tree::setScrollPosition(int position) {
    // A bar takes any position in its range, and the range is in whole numbers of 32 bits.
    if (const auto range = verticalScroll()) thumb_ = std::clamp(position, 0, range->last);
}

void Tree::scrollTo(int position, ui::ScrollBy by) {
    const auto range = verticalScroll();
    top_ = thumb_ = range ? std::clamp(position, 0, range->last) : 0;
    if (onScrolled) onScrolled(by);
}

void Tree::dropThumb(std::uint16_t position) {
    scrollTo(position, ui::ScrollBy::VerticalBar);
}

void Tree::dragVertically(int position) {
    scrollTo(position, ui::ScrollBy::VerticalBar);
}

void Tree::turnWheel(int notches) {
    scrollTo(top_ + notches * metrics::kWheelRows, ui::ScrollBy::Wheel);
}

void Tree::pressKey(int scrolledItems) {
    scrollTo(top_ + scrolledItems, ui::ScrollBy::Key);
}

void Tree::resize(int heightPx) {
    heightPx_ = heightPx;
    const auto range = verticalScroll();
    top_ = thumb_ = range ? std::min(top_, range->last) : 0;
}

}  // namespace headless
