#pragma once

#include <functional>
#include <memory>
#include <string>

#include "diff/assembly_diff_engine.h"
#include "platform/bxt/compare_outcome.h"
#include "results/result_data.h"

namespace results {

/// Both trees of an engine and their rows as plain data that outlives the engine's nodes.
bxtsg::ProductStructureOutcome StructureOf(const diff::AssemblyDiffEngine& engine);

/// All rows and volumes as plain data. The sections that are shown and their counts are the
/// dialog's to add.
bxtsg::SectionsOutcome SectionsOf(const ResultData& data);

/// The published outcome of one run. It asks its sources for trees and rows on first need and
/// keeps what it got. Release() cuts it off from the sources: it then stays as it is, empty if
/// nobody had asked before.
class CompareOutcome : public bxtsg::SCCompareOutcome {
public:
    using Source = std::function<bxtsg::ProductStructureOutcome()>;
    using SectionsSource = std::function<bxtsg::SectionsOutcome()>;

    CompareOutcome(std::wstring referencePath, std::wstring comparePath, Source source,
                   SectionsSource sections = nullptr);

    const std::wstring& referencePath() const override { return referencePath_; }
    const std::wstring& comparePath() const override { return comparePath_; }
    const bxtsg::ProductStructureOutcome& productStructure() override;
    const bxtsg::SectionsOutcome& sections() override;

    void Release();

private:
    std::wstring referencePath_;
    std::wstring comparePath_;
    Source source_;
    SectionsSource sectionsSource_;
    bxtsg::ProductStructureOutcome structure_;
    bxtsg::SectionsOutcome sections_;
};

}  // namespace results
