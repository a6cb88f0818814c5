#pragma once

#include <string>
#include <vector>

#include "platform/ui/list_box.h"

namespace headless {

/// A list box that is never painted.
class ListBox final : public ui::ListBox {
public:
    void insert(std::size_t position, const std::wstring& text) override;
    void remove(std::size_t position) override;
    std::size_t count() const override { return texts_.size(); }
    std::wstring text(std::size_t position) const override;
    void select(int position) override;
    int selected() const override { return selected_; }
    void setItemHeightPx(int height) override { itemHeight_ = height; }

    int itemHeightPx() const { return itemHeight_; }

private:
    std::vector<std::wstring> texts_;
    int selected_ = -1;
    int itemHeight_ = 0;
};

}  // namespace headless
