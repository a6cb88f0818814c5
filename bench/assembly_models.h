#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/memory_model.h"

namespace bench {

enum class Shape : int {
    Flat,      ///< one assembly of all parts
    Wide,      ///< as many sub-assemblies as each of them has parts
    Tens,      ///< ten children everywhere
    Spine500,  ///< 500 levels, parts spread over the upper ones, half as many every 16 levels
    Chains500  ///< chains of 500 levels side by side
};

enum class Names : int {
    Unique,   ///< every node has a name of its own
    Repeated  ///< 20 nodes to a name, as with catalogue parts
};

struct ModelPair {
    std::shared_ptr<const support::MemoryModel> reference;
    std::shared_ptr<const support::MemoryModel> compare;
};

/// Two models of about `nodes` occurrences each. In the compare model about one list of siblings
/// in 500 has a new name, one lacks its last node and one has two neighbours swapped. The same
/// arguments give the same models.
ModelPair makePair(Shape shape, Names names, std::size_t nodes);

/// Names of all occurrences in the order of their components.
std::vector<std::wstring> occurrenceNames(const support::MemoryModel& model);

}  // namespace bench
