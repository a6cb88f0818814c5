#include "results/compare_outcome.h"

#include <exception>
#include <unordered_map>
#include <utility>
#include <vector>

#include "extract/assembly_node.h"
#include "platform/os/debug_output.h"
#include "platform/os/utf8.h"
#include "results/part_rows.h"

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

std::vector<std::int32_t> numbers(const States& states) {
    std::vector<std::int32_t> made;
    made.reserve(states.size());
    for (const extract::ItemDiffState state : states) {
        made.push_back(static_cast<std::int32_t>(state));
    }
    return made;
}

bxtsg::OutcomeRows plainCopy(const SectionRows& rows) {
    return {rows.referenceNames, rows.referenceValues,          rows.compareNames,
            rows.compareValues,  numbers(rows.referenceStates), numbers(rows.compareStates)};
}

std::vector<bxtsg::OutcomePart> plainCopy(const std::vector<extract::PartAttributes>& parts) {
    std::vector<bxtsg::OutcomePart> made;
    made.reserve(parts.size());
    for (const extract::PartAttributes& part : parts) {
        bxtsg::OutcomePart& copy = made.emplace_back();
        copy.name = part.name;
        copy.isDifferent = part.isDifferent;
        copy.state = static_cast<std::int32_t>(part.state);
        copy.attributes.reserve(part.attributes.size());
        for (const extract::AttributeEntry& entry : part.attributes) {
            copy.attributes.push_back(
                {entry.key, entry.value, static_cast<std::int32_t>(entry.state)});
        }
    }
    return made;
}

/// What a source gives. It goes first, so that a model that can't be walked is not walked again
/// and again.
template <typename Outcome>
void ask(std::function<Outcome()>& source, Outcome& answer) {
    const std::function<Outcome()> once = std::exchange(source, nullptr);
    if (!once) return;
    try {
        answer = once();
    } catch (const std::exception& error) {
        os::debugOutput(os::toWide(error.what()));
    }
}

}  // namespace

bxtsg::SectionsOutcome SectionsOf(const ResultData& data) {
    bxtsg::SectionsOutcome outcome;
    outcome.fileInformation = plainCopy(data.fileInfo);
    outcome.billOfMaterials = plainCopy(data.bom);
    outcome.attributes = plainCopy(data.attributes);
    outcome.pmi = plainCopy(data.pmi);
    outcome.referenceParts = plainCopy(data.referenceParts);
    outcome.compareParts = plainCopy(data.compareParts);
    for (const PartPair& pair : PairParts(data.referenceParts, data.compareParts)) {
        outcome.partRows.push_back({pair.referenceIndex, pair.compareIndex});
    }
    outcome.referenceVolume = data.referenceVolume;
    outcome.compareVolume = data.compareVolume;
    outcome.referenceUnit = data.referenceUnit;
    outcome.compareUnit = data.compareUnit;
    return outcome;
}

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

CompareOutcome::CompareOutcome(std::wstring referencePath, std::wstring comparePath, Source source,
                               SectionsSource sections)
    : referencePath_(std::move(referencePath)),
      comparePath_(std::move(comparePath)),
      source_(std::move(source)),
      sectionsSource_(std::move(sections)) {}

const bxtsg::ProductStructureOutcome& CompareOutcome::productStructure() {
    ask(source_, structure_);
    return structure_;
}

const bxtsg::SectionsOutcome& CompareOutcome::sections() {
    ask(sectionsSource_, sections_);
    return sections_;
}

void CompareOutcome::Release() {
    source_ = nullptr;
    sectionsSource_ = nullptr;
}

}  // namespace results
