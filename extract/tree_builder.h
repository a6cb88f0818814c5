#pragma once

#include <functional>

#include "extract/assembly_node.h"
#include "platform/hps/component.h"

namespace extract {

/// Makes a node with its defaults and keeps it; the tree builder links it. Never gives null.
using NodeFactory = std::function<AssemblyNode*()>;

/// Product structure of a model: a root with one node per named product occurrence below it,
/// and one per body of a part that has several bodies of different names. Occurrences without a
/// name and components of other types give no node; what is below them moves up to their place.
///
/// Returns the root, which an empty component leaves without children. Nodes are made in
/// pre-order. Takes time linear in the components and no stack depth, as long as counting
/// occurrences takes the provider constant time. Exceptions of the provider pass through; the
/// nodes made so far stay with the factory.
AssemblyNode* BuildTree(const HPS::Component& component, const NodeFactory& createNode);

}  // namespace extract
