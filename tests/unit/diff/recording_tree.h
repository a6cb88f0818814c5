#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/ui/tree_control.h"

/// A tree control that keeps its items in one flat list and writes down what it was told.
class RecordingTree : public ui::TreeControl {
public:
    struct Item {
        ui::TreeItemData data;
        Item* parent = nullptr;
        Item* firstChild = nullptr;
        Item* lastChild = nullptr;
        Item* next = nullptr;
        int depth = 0;
    };

    void setRedraw(bool on) override { calls.push_back(on ? L"redraw on" : L"redraw off"); }
    void deleteAllItems() override {
        calls.push_back(L"delete all");
        items.clear();
        top_ = Item();
    }
    ui::TreeItem insertLast(ui::TreeItem parent, const ui::TreeItemData& data) override {
        if (calls.empty() || calls.back() != L"insert") calls.push_back(L"insert");
        Item& item = items.emplace_back();
        item.data = data;
        item.parent = static_cast<Item*>(parent);
        item.depth = parent ? item.parent->depth + 1 : 0;
        Item& above = parent ? *item.parent : top_;
        (above.lastChild ? above.lastChild->next : above.firstChild) = &item;
        above.lastChild = &item;
        return &item;
    }
    std::size_t itemCount() const override { return items.size(); }
    void invalidate() override { calls.push_back(L"invalidate"); }
    ui::TreeItem firstChild(ui::TreeItem parent) const override {
        return parent ? static_cast<Item*>(parent)->firstChild : top_.firstChild;
    }
    ui::TreeItem nextSibling(ui::TreeItem item) const override {
        return static_cast<Item*>(item)->next;
    }
    const ui::TreeItemData& item(ui::TreeItem item) const override {
        return static_cast<Item*>(item)->data;
    }

    /// In the order of insertion: depth, text, and marks for expanded '-' and children '+'.
    std::vector<std::wstring> lines() const {
        std::vector<std::wstring> lines;
        for (const Item& item : items) {
            lines.push_back(std::to_wstring(item.depth) + L" " + item.data.text +
                            (item.data.expanded ? L" -" : L"") +
                            (item.data.hasChildren ? L" +" : L""));
        }
        return lines;
    }

    std::deque<Item> items;
    std::vector<std::wstring> calls;

private:
    Item top_;
};
