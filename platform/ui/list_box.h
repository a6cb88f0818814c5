#pragma once

#include <cstddef>
#include <string>

namespace ui {

/// A column of texts of which one may be selected. Belongs to the user-interface thread.
class ListBox {
public:
    virtual ~ListBox();
    /// Inserts before that position, or at the end. A selection stays with its text.
    virtual void insert(std::size_t position, const std::wstring& text) = 0;
    /// Removes a text; if it was selected, nothing is any more.
    virtual void remove(std::size_t position) = 0;
    virtual std::size_t count() const = 0;
    /// Empty for a position outside.
    virtual std::wstring text(std::size_t position) const = 0;
    /// -1 for none. The owner's events do not hear of it.
    virtual void select(int position) = 0;
    virtual int selected() const = 0;
    virtual void setItemHeightPx(int height) = 0;
};

}  // namespace ui
