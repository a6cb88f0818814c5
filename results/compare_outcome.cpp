#include "results/compare_outcome.h"

#include <exception>
#include <unordered_map>
#include <utility>
#include <vector>

#include "extract/assembly_node.h"
#include "platform/os/debug_output.h"
#include "platform/os/utf8.h"

namespace results {
namespace {

using extract::AssemblyNode;
using Indices = std::unordered_map<const AssemblyNode*, std::int32_t>;

constexpr std::int32_t kNone = -1;

std::int32_t indexOf(const Indices& indices, const AssemblyNode* node) {
    const auto found = indices.find(node);
    return found == indices.end() ? kNone : found->second;
}

/// Nodes below the root in pre-order; their positions go to `indices`.
std::vector<const AssemblyNode*> nodesBelow(const AssemblyNode* root, Indices& indices) {
    std::vector<const AssemblyNode*> nodes;
    if (!root) return nodes;
    for (const AssemblyNode* node = extract::NextPreOrder(root, root); node;
         node = extract::NextPreOrder(node, root)) {
        indices.emplace(node, static_cast<std::int32_t>(nodes.size()));
        nodes.push_back(node);
    }
    return nodes;
}

bxtsg::OutcomeNode plainCopy(const AssemblyNode& node, const Indices& own, const Indices& other) {
    bxtsg::OutcomeNode copy;
    copy.name = node.name;
    copy.displayName = node.displayName;
    copy.level = node.level;
    copy.siblingIndex = node.siblingIndex;
    copy.state = static_cast<std::int32_t>(node.state);
    copy.parent = indexOf(own, node.parent);
    copy.peer = indexOf(other, node.peer);
    copy.referenceGroupCount = node.referenceGroupCount;
    copy.compareGroupCount = node.compareGroupCount;
    copy.hasSubcomponents = node.hasSubcomponents;
    copy.movedFromPath = node.movedFromPath;
    copy.movedToPath = node.movedToPath;
    return copy;
}

}  // namespace

bxtsg::ProductStructureOutcome StructureOf(const diff::AssemblyDiffEngine& engine) {
    Indices referenceIndices;
    Indices compareIndices;
    const auto reference = nodesBelow(engine.referenceRoot(), referenceIndices);
    const auto compare = nodesBelow(engine.compareRoot(), compareIndices);

    bxtsg::ProductStructureOutcome outcome;
    outcome.reference.reserve(reference.size());
    for (const AssemblyNode* node : reference) {
        outcome.reference.push_back(plainCopy(*node, referenceIndices, compareIndices));
    }
    outcome.compare.reserve(compare.size());
    for (const AssemblyNode* node : compare) {
        outcome.compare.push_back(plainCopy(*node, compareIndices, referenceIndices));
    }
    for (const diff::AlignedRow& row : engine.AlignedRows()) {
        outcome.rows.push_back(
            {indexOf(referenceIndices, row.reference), indexOf(compareIndices, row.compare)});
    }
    return outcome;
}

CompareOutcome::CompareOutcome(std::wstring referencePath, std::wstring comparePath, Source source)
    : referencePath_(std::move(referencePath)),
      comparePath_(std::move(comparePath)),
      source_(std::move(source)) {}

const bxtsg::ProductStructureOutcome& CompareOutcome::productStructure() {
    // The source goes first, so that a model that can't be walked is not walked again and again.
    if (const Source source = std::exchange(source_, nullptr)) {
        try {
            structure_ = source();
        } catch (const std::exception& error) {
            os::debugOutput(os::toWide(error.what()));
        }
    }
    return structure_;
}

}  // namespace results
