#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace extract {

/// Finds texts of a list without regard to case; of equal ones, the first. It refers to the texts,
/// which must stay where they are. One object serves many lists one after the other without
/// allocating anew.
class NoCaseIndex {
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    /// Forgets everything and makes room for about `expected` texts.
    void Restart(std::size_t expected);

    /// Enters a text with its position, unless an equal one is there. Returns the position of the
    /// equal one, or kNone when the text is new.
    std::size_t Insert(std::wstring_view text, std::size_t position);

    /// Position of the text that equals this one; kNone without one.
    std::size_t Find(std::wstring_view text) const;

private:
    struct Slot {
        std::size_t hash = 0;
        std::wstring_view text;
        std::size_t position = kNone;  // kNone: free
    };

    std::size_t slotOf(std::wstring_view text, std::size_t hash) const;
    void grow();

    std::vector<Slot> slots_;  // open addressing, a power of two
    std::size_t used_ = 0;
};

}  // namespace extract
