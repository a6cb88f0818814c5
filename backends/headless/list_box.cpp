#include "backends/headless/list_box.h"

#include <algorithm>

namespace headless {

void ListBox::insert(std::size_t position, const std::wstring& text) {
    const std::size_t at = std::min(position, texts_.size());
    texts_.insert(texts_.begin() + static_cast<std::ptrdiff_t>(at), text);
    if (selected_ >= static_cast<int>(at)) ++selected_;
}

void ListBox::remove(std::size_t position) {
    if (position >= texts_.size()) return;
    texts_.erase(texts_.begin() + static_cast<std::ptrdiff_t>(position));
    const int removed = static_cast<int>(position);
    if (selected_ == removed) {
        selected_ = -1;
    } else if (selected_ > removed) {
        --selected_;
    }
}

std::wstring ListBox::text(std::size_t position) const {
    return position < texts_.size() ? texts_[position] : std::wstring();
}

void ListBox::select(int position) {
    const bool there = position >= 0 && position < static_cast<int>(texts_.size());
    selected_ = there ? position : -1;
}

}  // namespace headless
