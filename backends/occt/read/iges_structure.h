#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "backends/occt/document/description.h"
#include "backends/occt/read/iges_text.h"

namespace occt::iges {

/// What kind of geometry an entity is by its type and form.
enum class Kind { None, Solid, Shell, Face, Surface, Curve, Point, Unknown };
/// Unknown stands for geometry that this system does not read.
Kind kindOf(const Entity& entity);

/// Whether an entity is a list of others that belong together.
bool isGroup(const Entity& entity);

/// A use of a node in another.
struct Usage {
    std::size_t node = 0;
    Placement placement = kNoMove;  ///< millimetres
};

/// A product: entities with geometry and uses of other nodes.
struct Node {
    std::string name;  ///< as the file gives it; empty for none
    /// Numbers of entities with geometry. Those that stand together are one body as far as they
    /// are loose faces, curves or points.
    std::vector<std::vector<std::uint32_t>> shapes;
    std::vector<Usage> usages;
};

/// The product structure of a file. Node 0 is the root.
struct Structure {
    std::vector<Node> nodes;
    std::size_t usageCount = 0;
    std::size_t brokenUsages = 0;  ///< that lead to nothing, or back to where they are
    std::size_t unread = 0;        ///< arrays, networks and references to other files
    /// Numbers of subfigures that nothing uses and of all that they are made of.
    std::vector<std::uint32_t> unused;
};

/// Millimetres of one of the file's units: its unit, over the scale of its model space.
double unitMm(const Text& text);

/// Length in millimetres of the file's unit; 1 where it names none that is known.
double namedUnitMm(const Text& text);

/// Name that an entity has by a property; empty for none.
std::string nameOf(const Text& text, std::uint32_t number);

/// Reads groups, subfigures, solid assemblies and their instances. What nothing else is made of
/// stands below the root.
Structure readStructure(const Text& text);

/// Numbers of the entities that an entity of structure or geometry is made of.
std::vector<std::uint32_t> partsOf(const Text& text, const Entity& entity);

}  // namespace occt::iges
