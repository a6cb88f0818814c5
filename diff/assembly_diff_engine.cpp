#include "diff/assembly_diff_engine.h"

#include "diff/match_key.h"
#include "extract/tree_builder.h"

namespace diff {

using extract::AssemblyNode;

AssemblyDiffEngine::AssemblyDiffEngine() = default;
AssemblyDiffEngine::~AssemblyDiffEngine() = default;

AssemblyNode* AssemblyDiffEngine::CreateNode() {
    return nodes_.Create();
}

void AssemblyDiffEngine::BuildAndDiff(const HPS::Component& referenceComponent,
                                      const HPS::Component& compareComponent) {
    Reset();
    referenceRoot_ = BuildTree(referenceComponent);
    compareRoot_ = BuildTree(compareComponent);
    DiffTrees(referenceRoot_, compareRoot_);
}

AssemblyNode* AssemblyDiffEngine::BuildTree(const HPS::Component& component) {
    return extract::BuildTree(component, [this] { return CreateNode(); });
}

void AssemblyDiffEngine::Reset() {
    referenceRoot_ = nullptr;
    compareRoot_ = nullptr;
    nodes_.Clear();
}

std::wstring AssemblyDiffEngine::GetNodePath(const AssemblyNode* node) {
    return extract::GetNodePath(node);
}

std::wstring AssemblyDiffEngine::MakeMatchKey(std::wstring_view text) {
    std::string key;
    AppendMatchKey(text, key);
    return {key.begin(), key.end()};
}

}  // namespace diff
