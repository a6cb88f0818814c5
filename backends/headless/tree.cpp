#include "backends/headless/tree.h"

namespace headless {

void Tree::deleteAllItems() {
    nodes_.clear();
    top_ = Node();
}

ui::TreeItem Tree::insertLast(ui::TreeItem parent, const ui::TreeItemData& item) {
    Node& above = parent ? *static_cast<Node*>(parent) : top_;
    Node& added = nodes_.emplace_back();
    added.data = item;
    if (above.lastChild) {
        above.lastChild->next = &added;
    } else {
        above.firstChild = &added;
    }
    above.lastChild = &added;
    return &added;
}

ui::TreeItem Tree::firstChild(ui::TreeItem parent) const {
    return parent ? static_cast<const Node*>(parent)->firstChild : top_.firstChild;
}

ui::TreeItem Tree::nextSibling(ui::TreeItem item) const {
    return item ? static_cast<const Node*>(item)->next : nullptr;
}

const ui::TreeItemData& Tree::item(ui::TreeItem item) const {
    return item ? static_cast<const Node*>(item)->data : top_.data;
}

}  // namespace headless
