#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "extract/assembly_node.h"

namespace diff {

/// The nodes of one tree by their exact name. Only the first node of a name is ever asked for,
/// and only for names that are known beforehand, so nothing else is kept. Refers to the names in
/// the nodes, which must outlive it.
class NameMap {
public:
    /// Announces a name; all of them come before the first node.
    void Want(const std::wstring& name);

    /// Keeps the node if its name is wanted and no earlier node had it.
    void Append(const extract::AssemblyNode* node);

    /// The first appended node of a wanted name; null when there is none.
    const extract::AssemblyNode* First(const std::wstring& name) const;

private:
    struct Slot {
        std::size_t hash = 0;
        const std::wstring* name = nullptr;  // null: free
        const extract::AssemblyNode* first = nullptr;
    };

    std::size_t slotOf(const std::wstring& name, std::size_t hash) const;
    void grow();

    std::vector<Slot> slots_;  // open addressing, a power of two
    std::size_t used_ = 0;
};

}  // namespace diff
