#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "backends/occt/document/description.h"
#include "platform/hps/component_provider.h"

namespace occt {

/// The tree of components that a description unfolds into, as flat arrays: component numbers
/// follow pre-order, so everything below a component is a range behind it. Built without
/// recursion in time linear in the components.
class FlatTree {
public:
    enum class Kind : std::uint8_t { ModelFile, Occurrence, PartDefinition, Item, Pmi };

    static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

    /// One component. `definition` is the one that it shows; `local` the position of an item or
    /// PMI in its definition, or of an occurrence's usage in the definition above it.
    struct Node {
        Kind kind = Kind::ModelFile;
        std::uint32_t definition = 0;
        std::uint32_t local = kNone;
        HPS::ComponentId parent = kNone;
        HPS::ComponentId end = 0;  ///< behind the last component below this one
    };

    /// `description` must outlive the tree and have a finite unfoldedSize().
    explicit FlatTree(const Description& description);

    std::size_t size() const { return nodes_.size(); }
    /// Throws HPS::Exception for a number that is none.
    const Node& node(HPS::ComponentId id) const;
    std::uint32_t type(HPS::ComponentId id) const;

    std::size_t childCount(HPS::ComponentId id) const;
    HPS::ComponentId child(HPS::ComponentId id, std::size_t index) const;

    std::size_t countAll(HPS::ComponentId id, std::uint32_t type) const;
    void collectAll(HPS::ComponentId id, std::uint32_t type,
                    std::vector<HPS::ComponentId>& out) const;

    /// Placement in world space of the nearest occurrence at or above the component.
    const Placement& placement(HPS::ComponentId id) const;

private:
    friend class FlatTreeBuilder;

    std::uint32_t typeOf(const Node& node) const;
    void linkChildren();
    void countTypes();

    const Description& description_;
    std::vector<Node> nodes_;
    std::vector<std::uint32_t> childBegin_;  // one more than nodes
    std::vector<HPS::ComponentId> children_;
    std::vector<Placement> placements_;  // per occurrence, in order
    // Per type that occurs: how many stand before each component; one more than nodes.
    std::map<std::uint32_t, std::vector<std::uint32_t>> before_;
};

}  // namespace occt
