#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "extract/assembly_node.h"

namespace diff {

using NodeList = std::vector<extract::AssemblyNode*>;

/// Pairs two sibling lists: nodes with the same matching key form a group, and inside a group
/// the n-th of one side belongs to the n-th of the other. Linear in the two lengths. One object
/// serves many lists after one another and keeps its memory in between.
class SiblingMatcher {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

    struct GroupCounts {
        std::int32_t reference = 0;
        std::int32_t compare = 0;
    };

    /// Forgets the last lists and pairs these.
    void Match(const NodeList& reference, const NodeList& compare);

    /// Position of the reference node that a compare node is paired with, or kNone.
    std::uint32_t PartnerOfCompare(std::size_t position) const { return partners_[position]; }

    bool ReferenceIsPaired(std::size_t position) const { return paired_[position] != 0; }

    /// How many nodes of either side share the node's key.
    GroupCounts CountsOfReference(std::size_t position) const {
        return groups_[groupOfReference_[position]].counts;
    }
    GroupCounts CountsOfCompare(std::size_t position) const {
        return groups_[groupOfCompare_[position]].counts;
    }

private:
    struct Group {
        std::uint64_t hash = 0;
        std::size_t keyStart = 0;
        std::size_t keyLength = 0;
        GroupCounts counts;
        std::uint32_t firstReference = kNone;  // first one that is not paired yet
        std::uint32_t lastReference = kNone;
    };

    std::uint32_t groupOf(const std::wstring& displayName);
    std::uint32_t addGroup(const Group& key);
    bool hasKey(const Group& group, const Group& key) const;
    void growTable();
    void fileIntoTable(std::uint32_t group);
    void addReference(std::uint32_t position, std::uint32_t group);
    void pairCompare(std::size_t position, std::uint32_t group);

    std::string keys_;
    std::vector<Group> groups_;
    std::vector<std::uint32_t> table_;  // open addressing; empty while there are few groups
    std::vector<std::uint32_t> groupOfReference_;
    std::vector<std::uint32_t> groupOfCompare_;
    std::vector<std::uint32_t> nextReference_;  // of the same group
    std::vector<std::uint32_t> partners_;
    std::vector<std::uint8_t> paired_;
};

}  // namespace diff
