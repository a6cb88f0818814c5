#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "extract/assembly_node.h"

namespace diff {

/// The nodes of one tree by their exact name. Only the first node of a name is ever asked for,
/// so only that one is kept. Refers to the nodes' own names, which must outlive it.
class NameMap {
public:
    /// Keeps the node unless an earlier one has its name.
    void Append(const extract::AssemblyNode* node);

    /// The first appended node of that name; null when there is none.
    const extract::AssemblyNode* First(const std::wstring& name) const;

private:
    struct Slot {
        std::size_t hash = 0;
        const extract::AssemblyNode* node = nullptr;
    };

    std::size_t slotOf(const std::wstring& name, std::size_t hash) const;
    void grow();

    std::vector<Slot> slots_;  // open addressing, a power of two
    std::size_t used_ = 0;
};

}  // namespace diff
