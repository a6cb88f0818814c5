#pragma once

#include <functional>
#include <memory>
#include <string>

#include "diff/assembly_diff_engine.h"
#include "platform/bxt/compare_outcome.h"

namespace results {

/// Both trees of an engine and their rows as plain data that outlives the engine's nodes.
bxtsg::ProductStructureOutcome StructureOf(const diff::AssemblyDiffEngine& engine);

/// The published outcome of one run. It asks its source for the trees on first need and keeps
/// what it got. Release() cuts it off from the source: it then stays as it is, empty if nobody
/// had asked before.
class CompareOutcome : public bxtsg::SCCompareOutcome {
public:
    using Source = std::function<bxtsg::ProductStructureOutcome()>;

    CompareOutcome(std::wstring referencePath, std::wstring comparePath, Source source);

    const std::wstring& referencePath() const override { return referencePath_; }
    const std::wstring& comparePath() const override { return comparePath_; }
    const bxtsg::ProductStructureOutcome& productStructure() override;

    void Release() { source_ = nullptr; }

private:
    std::wstring referencePath_;
    std::wstring comparePath_;
    Source source_;
    bxtsg::ProductStructureOutcome structure_;
};

}  // namespace results
