#include "apps/cli/findings.h"

namespace cli {
namespace {

using bxtexchange::GeometryState;
using bxtexchange::MatchEvidence;

enum NodeState { Same = 0, Added = 1, Deleted = 2, Modified = 3, Moved = 4 };

void countNodes(const std::vector<bxtsg::OutcomeNode>& nodes, std::size_t& moved, Counts& counts) {
    for (const bxtsg::OutcomeNode& node : nodes) {
        switch (node.state) {
            case Added: ++counts.added; break;
            case Deleted: ++counts.deleted; break;
            case Modified: ++counts.modified; break;
            case Moved: ++moved; break;
            default: break;
        }
    }
}

void countInstances(const bxtsg::SCGeometryResult& geometry, Counts& counts) {
    for (const bxtexchange::GeometryInstance& instance : geometry.instances) {
        switch (instance.state) {
            case GeometryState::Unchanged: ++counts.unchanged; break;
            case GeometryState::Moved: ++counts.moved; break;
            case GeometryState::OnlyInReference: ++counts.onlyInReference; break;
            case GeometryState::OnlyInCompare: ++counts.onlyInCompare; break;
            case GeometryState::Changed: ++counts.changed; break;
            case GeometryState::NotCompared: ++counts.notCompared; break;
        }
    }
}

void countLists(const bxtsg::SectionsOutcome& lists, Counts& counts) {
    namespace section = bxtsg::outcome_section;
    if (isSwitchedOn(lists, section::BillOfMaterials)) {
        counts.bom = countBom(lists.billOfMaterials);
    }
    if (isSwitchedOn(lists, section::Attributes)) {
        counts.attributes = countRows(lists.attributes);
        counts.partAttributes = countParts(lists);
    }
    if (isSwitchedOn(lists, section::Pmi)) counts.pmi = countRows(lists.pmi);
}

bool isDifferent(const std::vector<bxtsg::OutcomeNode>& nodes, std::int32_t index) {
    return index >= 0 && nodes[static_cast<std::size_t>(index)].state != Same;
}

}  // namespace

Counts count(const Findings& findings) {
    Counts counts;
    if (const auto* structure = findings.structure) {
        countNodes(structure->reference, counts.movedInReference, counts);
        countNodes(structure->compare, counts.movedInCompare, counts);
        counts.rows = structure->rows.size();
        for (const bxtsg::OutcomeRow& row : structure->rows) {
            if (differs(*structure, row)) ++counts.differentRows;
        }
    }
    if (findings.lists) countLists(*findings.lists, counts);
    if (findings.geometry) countInstances(*findings.geometry, counts);
    return counts;
}

int exitCodeFor(const Counts& counts, const ExitOn& rule) {
    const bool structure = counts.added + counts.deleted + counts.modified +
                               counts.movedInReference + counts.movedInCompare >
                           0;
    const bool geometry =
        counts.changed + counts.onlyInReference + counts.onlyInCompare + counts.notCompared > 0;
    const bool different =
        (rule.structure && structure) || (rule.geometry && geometry) ||
        (rule.placement && counts.moved > 0) || (rule.bom && counts.bom.any()) ||
        (rule.attributes && (counts.attributes.any() || counts.partAttributes.any())) ||
        (rule.pmi && counts.pmi.any());
    return different ? exit_code::Different : exit_code::Same;
}

bool differs(const bxtsg::ProductStructureOutcome& structure, const bxtsg::OutcomeRow& row) {
    return isDifferent(structure.reference, row.reference) ||
           isDifferent(structure.compare, row.compare);
}

const char* stateWord(int nodeState) {
    switch (nodeState) {
        case Added: return "added";
        case Deleted: return "deleted";
        case Modified: return "modified";
        case Moved: return "moved";
        default: return "same";
    }
}

const char* stateWord(GeometryState state) {
    switch (state) {
        case GeometryState::Unchanged: return "unchanged";
        case GeometryState::Moved: return "moved";
        case GeometryState::OnlyInReference: return "only in reference";
        case GeometryState::OnlyInCompare: return "only in compare";
        case GeometryState::Changed: return "changed";
        case GeometryState::NotCompared: return "not compared";
    }
    return "not compared";
}

const char* evidenceWord(MatchEvidence evidence) {
    switch (evidence) {
        case MatchEvidence::None: return "none";
        case MatchEvidence::IdenticalContent: return "identical content";
        case MatchEvidence::Identity: return "identity";
        case MatchEvidence::SamePlace: return "same place";
        case MatchEvidence::Faces: return "same faces";
    }
    return "none";
}

}  // namespace cli
