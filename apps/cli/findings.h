#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "apps/cli/options.h"
#include "apps/cli/row_findings.h"
#include "platform/bxt/compare_outcome.h"
#include "platform/exchange/geometry_result.h"

namespace cli {

/// What a run left on its result document, for the writers to print. Refers to the document's
/// records, which outlive it.
struct Findings {
    std::string referenceName;  ///< as the user gave it
    std::string compareName;
    /// Null while the product structure is switched off.
    const bxtsg::ProductStructureOutcome* structure = nullptr;
    const bxtsg::SectionsOutcome* lists = nullptr;
    const bxtsg::SCGeometryResult* geometry = nullptr;
    /// What the imports reported beside their models, UTF-8, one sentence each.
    std::vector<std::string> messages;
};

/// How often each state occurs.
struct Counts {
    /// Nodes of both trees by state; a node and its peer count as two.
    std::size_t added = 0;
    std::size_t deleted = 0;
    std::size_t modified = 0;
    std::size_t movedInReference = 0;
    std::size_t movedInCompare = 0;
    std::size_t rows = 0;
    std::size_t differentRows = 0;
    /// Instances by state.
    std::size_t unchanged = 0;
    std::size_t moved = 0;
    std::size_t changed = 0;
    std::size_t onlyInReference = 0;
    std::size_t onlyInCompare = 0;
    std::size_t notCompared = 0;
    /// Lines of the lists; all zero for a section that is switched off.
    RowCounts bom;
    RowCounts attributes;
    RowCounts partAttributes;
    RowCounts pmi;
};

Counts count(const Findings& findings);

/// Exit code for these counts: exit_code::Different when a difference that `rule` asks for is
/// there, otherwise exit_code::Same.
int exitCodeFor(const Counts& counts, const ExitOn& rule);

/// True when one of the nodes of the row is not the same.
bool differs(const bxtsg::ProductStructureOutcome& structure, const bxtsg::OutcomeRow& row);

/// "same", "added", "deleted", "modified", "moved"; "same" for any other number.
const char* stateWord(int nodeState);
/// "unchanged", "moved", "only in reference", "only in compare", "changed", "not compared".
const char* stateWord(bxtexchange::GeometryState state);
/// "none", "identical content", "identity", "same place", "same faces".
const char* evidenceWord(bxtexchange::MatchEvidence evidence);

}  // namespace cli
