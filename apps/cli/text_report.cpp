#include "apps/cli/text_report.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "apps/cli/table.h"
#include "apps/cli/text.h"

namespace cli {
namespace {

using bxtexchange::GeometryInstance;
using bxtexchange::GeometryState;
using bxtsg::OutcomeNode;
using bxtsg::ProductStructureOutcome;

constexpr std::size_t kNameLimit = 48;
constexpr std::size_t kPathLimit = 90;
// Deeper rows say how deep they are: 20,000 levels of blanks would bury the names.
constexpr std::int32_t kIndentLimit = 20;
constexpr std::int32_t kLevelStep = 5;

Paint paintOf(std::int32_t nodeState) {
    switch (nodeState) {
        case 1: return Paint::Green;
        case 2: return Paint::Red;
        case 3:
        case 4: return Paint::Yellow;
        default: return Paint::None;
    }
}

Paint paintOf(GeometryState state) {
    switch (state) {
        case GeometryState::Unchanged: return Paint::None;
        case GeometryState::OnlyInReference: return Paint::Red;
        case GeometryState::OnlyInCompare: return Paint::Green;
        default: return Paint::Yellow;
    }
}

const OutcomeNode* nodeAt(const std::vector<OutcomeNode>& nodes, std::int32_t index) {
    return index < 0 ? nullptr : &nodes[static_cast<std::size_t>(index)];
}

std::string indented(const OutcomeNode& node) {
    const std::int32_t depth = std::max(node.level / kLevelStep, 0);
    const auto blanks = static_cast<std::size_t>(2 * std::min(depth, kIndentLimit));
    std::string text(blanks, ' ');
    if (depth > kIndentLimit) text += "[level " + std::to_string(depth) + "] ";
    return text + printable(node.displayName);
}

void addSide(const OutcomeNode* node, std::vector<Cell>& line) {
    if (!node) {
        line.insert(line.end(), {{"", Paint::None}, {"", Paint::None}});
        return;
    }
    const Paint paint = paintOf(node->state);
    line.push_back({indented(*node), paint});
    line.push_back({stateWord(node->state), paint});
}

std::string movedNote(const OutcomeNode* node) {
    if (!node || node->movedFromPath == node->movedToPath) return {};
    return printable(node->movedFromPath) + " -> " + printable(node->movedToPath);
}

std::string structureReport(const ProductStructureOutcome& structure,
                            const TextReportOptions& options) {
    std::string title = "Product structure\n";
    Table table(kNameLimit);
    table.add({{"REFERENCE", Paint::Faint}, {"", Paint::None}, {"COMPARE", Paint::Faint}});
    bool any = false;
    for (const bxtsg::OutcomeRow& row : structure.rows) {
        if (options.changesOnly && !differs(structure, row)) continue;
        any = true;
        const OutcomeNode* reference = nodeAt(structure.reference, row.reference);
        const OutcomeNode* compare = nodeAt(structure.compare, row.compare);
        std::vector<Cell> line;
        addSide(reference, line);
        addSide(compare, line);
        line.push_back({movedNote(reference ? reference : compare), Paint::Faint});
        table.add(std::move(line));
    }
    if (any) return title + table.text(options.colour) + "\n";
    return title +
           (structure.rows.empty() ? "  nothing in either file\n\n" : "  no differences\n\n");
}

double length(const std::array<double, 3>& v) {
    return std::hypot(v[0], v[1], v[2]);
}

/// "volume +120.500 mm3 (+1.2 %)"; empty when the two print alike.
std::string delta(const char* what, double reference, double compare, const char* unit) {
    const double difference = compare - reference;
    const std::string number = decimal(difference, 3);
    if (number == "0.000") return {};
    const char* sign = difference > 0 ? "+" : "";
    std::string text = std::string(what) + " " + sign + number + " " + unit;
    if (reference != 0.0) {
        text += " (" + std::string(sign) + decimal(100.0 * difference / reference, 1) + " %)";
    }
    return text;
}

void append(std::string& text, const std::string& part) {
    if (part.empty()) return;
    if (!text.empty()) text += ", ";
    text += part;
}

bool isOpen(const bxtexchange::GeometryInstanceSide& side) {
    return side.identity.volumeMm3 == 0.0;
}

/// An open body has no volume, so that no difference can be told either.
std::string volumeOf(const GeometryInstance& instance) {
    const bool open = isOpen(instance.reference);
    if (open != isOpen(instance.compare)) {
        return open ? "open in reference, closed in compare"
                    : "closed in reference, open in compare";
    }
    return delta("volume", instance.reference.identity.volumeMm3,
                 instance.compare.identity.volumeMm3, "mm3");
}

std::string changeOf(const GeometryInstance& instance, bool withSummary) {
    const auto& before = instance.reference.identity;
    const auto& after = instance.compare.identity;
    std::string text;
    append(text, volumeOf(instance));
    append(text, delta("area", before.areaMm2, after.areaMm2, "mm2"));
    if (before.faceCount != after.faceCount) {
        append(text, "faces " + std::to_string(before.faceCount) + " -> " +
                         std::to_string(after.faceCount));
    }
    if (withSummary) append(text, printable(instance.faces.summary));
    return text;
}

/// "12 faces unchanged, 3 changed; at most 0.050 mm apart", then what happened, line by line.
std::vector<std::string> faceLines(const bxtexchange::FaceDifference& faces) {
    std::string counts = std::to_string(faces.unchangedFaces) + " faces unchanged";
    const auto add = [&](std::int32_t number, const char* what) {
        if (number > 0) append(counts, std::to_string(number) + " " + what);
    };
    add(faces.changedFaces, "changed");
    add(faces.addedFaces, "added");
    add(faces.removedFaces, "removed");
    std::vector<std::string> lines = {counts + "; at most " + decimal(faces.largestDeviationMm, 3) +
                                      " mm apart"};
    const std::string summary = printable(faces.summary);
    constexpr std::string_view kBetween = "; ";
    for (std::size_t from = 0; from < summary.size();) {
        const std::size_t end = std::min(summary.find(kBetween, from), summary.size());
        lines.push_back(summary.substr(from, end - from));
        from = end + kBetween.size();
    }
    return lines;
}

/// "by 5.000 mm (3.000, 4.000, 0.000)"; empty when nothing of it can be seen.
std::string shiftOf(const GeometryInstance& instance) {
    const std::string distance = decimal(length(instance.displacementMm), 3);
    if (distance == "0.000") return {};
    const auto& d = instance.displacementMm;
    return "by " + distance + " mm (" + decimal(d[0], 3) + ", " + decimal(d[1], 3) + ", " +
           decimal(d[2], 3) + ")";
}

std::string turnOf(const GeometryInstance& instance) {
    const std::string angle = decimal(instance.rotationDeg, 2);
    return angle == "0.00" ? std::string() : "turned by " + angle + " deg";
}

std::string detailOf(const GeometryInstance& instance, bool withSummary) {
    std::string text;
    if (instance.state == GeometryState::Changed) {
        append(text, changeOf(instance, withSummary));
        // Another shape has another centroid, also where nothing was moved; that of a volume and
        // that of a surface say nothing about each other.
        const bool comparable = isOpen(instance.reference) == isOpen(instance.compare);
        const std::string shift = comparable ? shiftOf(instance) : std::string();
        append(text, shift.empty() ? shift : "centroid shifted " + shift);
        append(text, turnOf(instance));
    }
    if (instance.state == GeometryState::Moved) append(text, printable(instance.motion));
    if (instance.ambiguous) append(text, "another match was as good");
    append(text, printable(instance.note));
    return text;
}

std::string pathOf(const GeometryInstance& instance) {
    const auto& reference = instance.reference;
    const auto& compare = instance.compare;
    if (!reference.present) return printable(compare.path);
    if (!compare.present || reference.path == compare.path) return printable(reference.path);
    return printable(reference.path) + " -> " + printable(compare.path);
}

std::string geometryReport(const bxtsg::SCGeometryResult& geometry,
                           const TextReportOptions& options) {
    Table table(kPathLimit);
    bool any = false;
    for (const GeometryInstance& instance : geometry.instances) {
        if (options.changesOnly && instance.state == GeometryState::Unchanged) continue;
        any = true;
        const bool matched = instance.evidence != bxtexchange::MatchEvidence::None;
        const Paint paint = paintOf(instance.state);
        table.add({{stateWord(instance.state), paint},
                   {pathOf(instance), paint},
                   {matched ? evidenceWord(instance.evidence) : "", Paint::Faint},
                   {detailOf(instance, !options.geometry), Paint::None}});
        if (!options.geometry || !instance.hasFaceDifference) continue;
        for (const std::string& line : faceLines(instance.faces)) {
            table.add({{"", Paint::None},
                       {"", Paint::None},
                       {"", Paint::None},
                       {"  " + line, Paint::None}});
        }
    }
    const std::string title =
        options.geometry ? "3D comparison within " + shortest(geometry.lengthToleranceMm) + " mm\n"
                         : "3D comparison\n";
    if (any) return title + table.text(options.colour) + "\n";
    return title +
           (geometry.instances.empty() ? "  no bodies in either file\n\n" : "  no differences\n\n");
}

std::string notesReport(const Findings& findings) {
    std::string lines;
    for (const std::string& message : findings.messages) {
        lines += "  " + printable(std::string_view(message)) + "\n";
    }
    if (findings.geometry) {
        for (const std::wstring& note : findings.geometry->notes) {
            lines += "  " + printable(note) + "\n";
        }
    }
    return lines.empty() ? lines : "Notes\n" + lines + "\n";
}

void appendCount(std::string& text, std::size_t number, const char* what) {
    if (number > 0) append(text, std::to_string(number) + " " + what);
}

std::string summaryLine(const Findings& findings) {
    const Counts counts = count(findings);
    std::string structure;
    appendCount(structure, counts.added, "added");
    appendCount(structure, counts.deleted, "deleted");
    appendCount(structure, counts.modified, "modified");
    appendCount(structure, std::max(counts.movedInReference, counts.movedInCompare), "moved");
    std::string geometry;
    appendCount(geometry, counts.changed, "changed");
    appendCount(geometry, counts.moved, "moved");
    appendCount(geometry, counts.onlyInReference, "only in reference");
    appendCount(geometry, counts.onlyInCompare, "only in compare");
    appendCount(geometry, counts.notCompared, "not compared");
    appendCount(geometry, counts.unchanged, "unchanged");
    const bool same = exitCodeFor(counts, ExitOn()) == exit_code::Same;
    std::string text = std::string("Summary: ") + (same ? "no differences" : "files differ") + "; ";
    if (findings.structure) text += "structure: " + (structure.empty() ? "same" : structure) + "; ";
    if (findings.lists) text += sectionsSummary(*findings.lists, counts);
    return text + "3D: " + (geometry.empty() ? "nothing to compare" : geometry) + "\n";
}

}  // namespace

std::string textReport(const Findings& findings, const TextReportOptions& options) {
    std::string text = "Reference: " + printable(std::string_view(findings.referenceName)) +
                       "\nCompare:   " + printable(std::string_view(findings.compareName)) + "\n\n";
    const bool all = !options.geometry;
    if (findings.structure && all && options.sections.structure) {
        text += structureReport(*findings.structure, options);
    }
    if (findings.lists && all) text += sectionsReport(*findings.lists, options);
    if (findings.geometry && (!all || options.sections.geometry)) {
        text += geometryReport(*findings.geometry, options);
    }
    return text + notesReport(findings) + summaryLine(findings);
}

}  // namespace cli
