#include "apps/cli/json_report.h"

#include <nlohmann/json.hpp>

#include "apps/cli/json_sections.h"
#include "platform/os/utf8.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;
using bxtexchange::GeometryInstance;
using bxtexchange::GeometryInstanceSide;
using bxtsg::OutcomeNode;

constexpr int kFormat = 1;
constexpr std::int32_t kLevelStep = 5;

Json textOrNull(const std::wstring& text) {
    return text.empty() ? Json() : Json(os::toUtf8(text));
}

Json nodeJson(const OutcomeNode& node, std::size_t index) {
    Json made = {{"index", index},
                 {"name", os::toUtf8(node.name)},
                 {"displayName", os::toUtf8(node.displayName)},
                 {"depth", node.level / kLevelStep},
                 {"siblingIndex", node.siblingIndex},
                 {"parent", indexOrNull(node.parent)},
                 {"peer", indexOrNull(node.peer)},
                 {"state", stateWord(node.state)},
                 {"referenceGroupCount", node.referenceGroupCount},
                 {"compareGroupCount", node.compareGroupCount},
                 {"hasSubcomponents", node.hasSubcomponents},
                 {"movedFromPath", textOrNull(node.movedFromPath)},
                 {"movedToPath", textOrNull(node.movedToPath)}};
    return made;
}

Json treeJson(const std::vector<OutcomeNode>& nodes, bool changesOnly) {
    Json made = Json::array();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!changesOnly || nodes[i].state != 0) made.push_back(nodeJson(nodes[i], i));
    }
    return made;
}

Json structureJson(const bxtsg::ProductStructureOutcome& structure, bool changesOnly) {
    Json rows = Json::array();
    for (const bxtsg::OutcomeRow& row : structure.rows) {
        if (changesOnly && !differs(structure, row)) continue;
        rows.push_back(
            {{"reference", indexOrNull(row.reference)}, {"compare", indexOrNull(row.compare)}});
    }
    return {{"reference", treeJson(structure.reference, changesOnly)},
            {"compare", treeJson(structure.compare, changesOnly)},
            {"rows", rows}};
}

Json sideJson(const GeometryInstanceSide& side) {
    if (!side.present) return {};
    const bxtexchange::BodyIdentity& body = side.identity;
    return {{"path", os::toUtf8(side.path)},
            {"product", os::toUtf8(side.product)},
            {"volumeMm3", body.volumeMm3},
            {"areaMm2", body.areaMm2},
            {"principalMoments", body.principalMoments},
            {"centroidMm", body.centroidMm},
            {"faceCount", body.faceCount},
            {"surfaceKinds",
             {{"plane", body.surfaceKinds[0]},
              {"cylinder", body.surfaceKinds[1]},
              {"cone", body.surfaceKinds[2]},
              {"sphere", body.surfaceKinds[3]},
              {"torus", body.surfaceKinds[4]},
              {"other", body.surfaceKinds[5]}}},
            {"placement", side.placement}};
}

Json facesJson(const GeometryInstance& instance) {
    if (!instance.hasFaceDifference) return {};
    const bxtexchange::FaceDifference& faces = instance.faces;
    return {{"unchangedFaces", faces.unchangedFaces},
            {"changedFaces", faces.changedFaces},
            {"addedFaces", faces.addedFaces},
            {"removedFaces", faces.removedFaces},
            {"largestDeviationMm", faces.largestDeviationMm},
            {"summary", os::toUtf8(faces.summary)}};
}

Json instanceJson(const GeometryInstance& instance) {
    return {{"state", stateWord(instance.state)},
            {"evidence", evidenceWord(instance.evidence)},
            {"ambiguous", instance.ambiguous},
            {"displacementMm", instance.displacementMm},
            {"rotationDeg", instance.rotationDeg},
            {"rotationAxis", instance.rotationAxis},
            {"motion", textOrNull(instance.motion)},
            {"meshAllowanceMm", instance.meshAllowanceMm},
            {"reference", sideJson(instance.reference)},
            {"compare", sideJson(instance.compare)},
            {"faces", facesJson(instance)},
            {"note", textOrNull(instance.note)}};
}

Json geometryJson(const bxtsg::SCGeometryResult& geometry, bool changesOnly) {
    Json instances = Json::array();
    for (const GeometryInstance& instance : geometry.instances) {
        if (changesOnly && instance.state == bxtexchange::GeometryState::Unchanged) continue;
        instances.push_back(instanceJson(instance));
    }
    Json notes = Json::array();
    for (const std::wstring& note : geometry.notes) notes.push_back(os::toUtf8(note));
    return {{"lengthToleranceMm", geometry.lengthToleranceMm},
            {"relativeTolerance", geometry.relativeTolerance},
            {"instances", instances},
            {"notes", notes}};
}

Json summaryJson(const Counts& counts, const ExitOn& rule) {
    const bool different = exitCodeFor(counts, ExitOn()) != exit_code::Same;
    return {{"different", different},
            {"exitCode", exitCodeFor(counts, rule)},
            {"structure",
             {{"rows", counts.rows},
              {"differentRows", counts.differentRows},
              {"added", counts.added},
              {"deleted", counts.deleted},
              {"modified", counts.modified},
              {"movedInReference", counts.movedInReference},
              {"movedInCompare", counts.movedInCompare}}},
            {"geometry",
             {{"unchanged", counts.unchanged},
              {"moved", counts.moved},
              {"changed", counts.changed},
              {"onlyInReference", counts.onlyInReference},
              {"onlyInCompare", counts.onlyInCompare},
              {"notCompared", counts.notCompared}}}};
}

}  // namespace

std::string jsonReport(const Findings& findings, bool changesOnly, const ExitOn& rule,
                       const Sections& sections) {
    const Counts counts = count(findings);
    Json summary = summaryJson(counts, rule);
    if (findings.lists) addSectionCounts(*findings.lists, counts, summary);
    Json report = {{"format", kFormat},
                   {"program", std::string("bextora ") + BEXTORA_VERSION},
                   {"reference", findings.referenceName},
                   {"compare", findings.compareName},
                   {"changesOnly", changesOnly},
                   {"summary", summary}};
    if (findings.structure && sections.structure) {
        report["productStructure"] = structureJson(*findings.structure, changesOnly);
    }
    if (findings.lists) addSections(*findings.lists, sections, changesOnly, report);
    if (findings.geometry && sections.geometry) {
        report["geometry"] = geometryJson(*findings.geometry, changesOnly);
    }
    report["messages"] = findings.messages;
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace cli
