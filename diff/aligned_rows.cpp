#include "diff/assembly_diff_engine.h"
#include "diff/row_builder.h"

namespace diff {

using extract::AssemblyNode;

namespace {

constexpr std::int32_t kLevelStep = 5;
constexpr std::size_t kIndentStep = 2;

std::size_t indentOf(const NodePair& pair) {
    const AssemblyNode& node = pair.reference ? *pair.reference : *pair.compare;
    if (node.level <= 0) return 0;
    return kIndentStep * static_cast<std::size_t>(node.level / kLevelStep);
}

std::wstring indented(std::size_t indent, const AssemblyNode* node) {
    std::wstring text;
    if (!node) return text;
    text.reserve(indent + node->displayName.size());
    text.append(indent, L' ');
    text += node->displayName;
    return text;
}

void pushReversed(const std::vector<NodePair>& rows, std::vector<NodePair>& waiting) {
    waiting.insert(waiting.end(), rows.rbegin(), rows.rend());
}

}  // namespace

std::vector<AlignedRow> AssemblyDiffEngine::AlignedRows() const {
    std::vector<AlignedRow> rows;
    RowBuilder builder;
    std::vector<NodePair> waiting;  // the next line on top
    pushReversed(
        builder.Rows(ChildrenOf(referenceRoot_), ChildrenOf(compareRoot_), LeftOvers::FillGaps),
        waiting);
    while (!waiting.empty()) {
        const NodePair row = waiting.back();
        waiting.pop_back();
        rows.push_back({row.reference, row.compare, indentOf(row)});
        if (row.hasChildren()) pushReversed(builder.RowsBelow(row), waiting);
    }
    return rows;
}

void AssemblyDiffEngine::FlattenPSTreeAligned(std::vector<std::wstring>& referenceNames,
                                              std::vector<std::wstring>& referenceStates,
                                              std::vector<std::wstring>& compareNames,
                                              std::vector<std::wstring>& compareStates) const {
    const std::vector<AlignedRow> rows = AlignedRows();
    for (auto* list : {&referenceNames, &referenceStates, &compareNames, &compareStates}) {
        list->reserve(list->size() + rows.size());
    }
    for (const AlignedRow& row : rows) {
        referenceNames.push_back(indented(row.indent, row.reference));
        referenceStates.emplace_back(extract::StateText(row.reference));
        compareNames.push_back(indented(row.indent, row.compare));
        compareStates.emplace_back(extract::StateText(row.compare));
    }
}

}  // namespace diff
