#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/hps/metadata.h"

namespace HPS {

/// Number of one component inside its provider.
using ComponentId = std::uint32_t;

/// A whole imported model as a tree of numbered components; what stands behind HPS::Component.
/// Immutable once it is handed out, so it may be read from any thread.
/// Operations are called with ids that this provider gave out, and may throw HPS::Exception.
class ComponentProvider {
public:
    virtual ~ComponentProvider() = default;

    /// Component of the model file; exactly one child, the root occurrence.
    virtual ComponentId root() const = 0;

    /// See component_type.h.
    virtual std::uint32_t type(ComponentId id) const = 0;

    /// Name as UTF-8; may be empty.
    virtual std::string name(ComponentId id) const = 0;

    /// Direct subcomponents in model order. Both take constant time.
    virtual std::size_t childCount(ComponentId id) const = 0;
    virtual ComponentId child(ComponentId id, std::size_t index) const = 0;

    /// Number of components that `type` (exact code or mask) selects at and below `id`, itself
    /// included when it is of that very type. Constant time for exact product occurrences and
    /// for masks and types of representation items.
    virtual std::size_t countAll(ComponentId id, std::uint32_t type) const = 0;

    /// The same components, itself first, then in pre-order and model order; appended to `out`.
    virtual void collectAll(ComponentId id, std::uint32_t type,
                            std::vector<ComponentId>& out) const = 0;

    /// Components above this one, the nearest first reached one first; empty for the root.
    virtual std::vector<ComponentId> owners(ComponentId id) const = 0;

    /// All metadata of the component in model order; may be empty.
    virtual std::vector<std::shared_ptr<const MetadataValue>> metadata(ComponentId id) const = 0;

    /// Handle for the physical-property functions, or null. Lives as long as the provider.
    virtual const void* exchangeEntity(ComponentId id) const = 0;
};

}  // namespace HPS
