#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "extract/assembly_node.h"

namespace diff {

/// Exclusive owner of nodes in the order in which they were made. Nodes never move, and they are
/// destroyed one after the other, whatever links them. Blocks keep neighbours close together in
/// memory: comparing two large trees is a matter of memory more than of work.
class NodeStore {
public:
    /// A node with its defaults; lives until Clear().
    extract::AssemblyNode* Create() {
        if (used_ == capacity_) addBlock();
        return &blocks_.back()[used_++];
    }

    void Clear() {
        blocks_.clear();
        used_ = 0;
        capacity_ = 0;
    }

private:
    static constexpr std::size_t kSmallestBlock = 16;
    static constexpr std::size_t kLargestBlock = 4096;

    void addBlock() {
        capacity_ = std::clamp(2 * capacity_, kSmallestBlock, kLargestBlock);
        blocks_.push_back(std::make_unique<extract::AssemblyNode[]>(capacity_));
        used_ = 0;
    }

    std::vector<std::unique_ptr<extract::AssemblyNode[]>> blocks_;
    std::size_t used_ = 0;      // of the last block
    std::size_t capacity_ = 0;  // of the last block
};

}  // namespace diff
