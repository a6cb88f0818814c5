#include "apps/cli/json_sections.h"

#include "platform/os/utf8.h"

namespace cli {
namespace {

namespace section = bxtsg::outcome_section;
using Json = nlohmann::ordered_json;

Json sideJson(const std::vector<std::wstring>& names, const std::vector<std::wstring>& values,
              const std::vector<std::int32_t>& states, bool changesOnly) {
    Json rows = Json::array();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::int32_t state = i < states.size() ? states[i] : 0;
        if (changesOnly && state == 0) continue;
        rows.push_back({{"index", i},
                        {"name", os::toUtf8(names[i])},
                        {"value", i < values.size() ? Json(os::toUtf8(values[i])) : Json()},
                        {"state", rowWord(state)}});
    }
    return rows;
}

Json rowsJson(const bxtsg::OutcomeRows& rows, bool changesOnly) {
    return {{"reference", sideJson(rows.referenceNames, rows.referenceValues, rows.referenceStates,
                                   changesOnly)},
            {"compare",
             sideJson(rows.compareNames, rows.compareValues, rows.compareStates, changesOnly)}};
}

/// A row of a bill of materials is a change as well when its quantity is another one.
Json bomJson(const bxtsg::OutcomeRows& rows, bool changesOnly) {
    if (!changesOnly) return rowsJson(rows, false);
    bxtsg::OutcomeRows marked = rows;
    marked.referenceStates.resize(rows.referenceNames.size());
    marked.compareStates.resize(rows.compareNames.size());
    Json reference = Json::array();
    Json compare = Json::array();
    const Json all = rowsJson(marked, false);
    for (const RowPair& pair : pairRows(rows.referenceNames, rows.compareNames)) {
        const RowSide left = referenceRow(rows, pair.reference);
        const RowSide right = compareRow(rows, pair.compare);
        const bool both = left.name && right.name;
        const bool same =
            left.state == 0 && right.state == 0 && (!both || *left.value == *right.value);
        if (same) continue;
        if (left.name)
            reference.push_back(all["reference"][static_cast<std::size_t>(pair.reference)]);
        if (right.name) compare.push_back(all["compare"][static_cast<std::size_t>(pair.compare)]);
    }
    return {{"reference", reference}, {"compare", compare}};
}

Json volumeJson(double volume, const std::wstring& unit) {
    if (!(volume > 0)) return {};
    return {{"value", volume}, {"unit", os::toUtf8(unit)}};
}

Json partsJson(const std::vector<bxtsg::OutcomePart>& parts, bool changesOnly) {
    Json made = Json::array();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const bxtsg::OutcomePart& part = parts[i];
        if (changesOnly && !part.isDifferent) continue;
        Json attributes = Json::array();
        for (const bxtsg::OutcomeAttribute& attribute : part.attributes) {
            if (changesOnly && attribute.state == 0) continue;
            attributes.push_back({{"name", os::toUtf8(attribute.key)},
                                  {"value", os::toUtf8(attribute.value)},
                                  {"state", rowWord(attribute.state)}});
        }
        made.push_back({{"index", i},
                        {"name", os::toUtf8(part.name)},
                        {"different", part.isDifferent},
                        {"attributes", attributes}});
    }
    return made;
}

Json partRowsJson(const bxtsg::SectionsOutcome& lists, bool changesOnly) {
    const auto differs = [](const std::vector<bxtsg::OutcomePart>& parts, std::int32_t index) {
        return index >= 0 && parts[static_cast<std::size_t>(index)].isDifferent;
    };
    Json rows = Json::array();
    for (const bxtsg::OutcomeRow& row : lists.partRows) {
        const bool different = differs(lists.referenceParts, row.reference) ||
                               differs(lists.compareParts, row.compare);
        if (changesOnly && !different) continue;
        rows.push_back(
            {{"reference", indexOrNull(row.reference)}, {"compare", indexOrNull(row.compare)}});
    }
    return rows;
}

Json countsJson(const RowCounts& counts) {
    return {{"referenceRows", counts.referenceRows},
            {"compareRows", counts.compareRows},
            {"onlyInReference", counts.onlyInReference},
            {"onlyInCompare", counts.onlyInCompare},
            {"different", counts.different}};
}

}  // namespace

Json indexOrNull(std::int32_t index) {
    return index < 0 ? Json() : Json(index);
}

void addSections(const bxtsg::SectionsOutcome& lists, const Sections& wanted, bool changesOnly,
                 Json& report) {
    const bool attributes = isSwitchedOn(lists, section::Attributes);
    if (wanted.file) {
        Json made = rowsJson(lists.fileInformation, changesOnly);
        made["volumes"] = {{"reference", volumeJson(lists.referenceVolume, lists.referenceUnit)},
                           {"compare", volumeJson(lists.compareVolume, lists.compareUnit)}};
        report["fileInformation"] = std::move(made);
    }
    if (wanted.bom && isSwitchedOn(lists, section::BillOfMaterials)) {
        report["billOfMaterials"] = bomJson(lists.billOfMaterials, changesOnly);
    }
    if (wanted.attributes && attributes) {
        report["attributes"] = rowsJson(lists.attributes, changesOnly);
    }
    if (wanted.parts && attributes) {
        report["parts"] = {{"reference", partsJson(lists.referenceParts, changesOnly)},
                           {"compare", partsJson(lists.compareParts, changesOnly)},
                           {"rows", partRowsJson(lists, changesOnly)}};
    }
    if (wanted.pmi && isSwitchedOn(lists, section::Pmi)) {
        report["pmi"] = rowsJson(lists.pmi, changesOnly);
    }
}

void addSectionCounts(const bxtsg::SectionsOutcome& lists, const Counts& counts, Json& summary) {
    if (isSwitchedOn(lists, section::BillOfMaterials)) {
        summary["billOfMaterials"] = countsJson(counts.bom);
    }
    if (isSwitchedOn(lists, section::Attributes)) {
        summary["attributes"] = countsJson(counts.attributes);
        summary["partAttributes"] = countsJson(counts.partAttributes);
    }
    if (isSwitchedOn(lists, section::Pmi)) summary["pmi"] = countsJson(counts.pmi);
}

}  // namespace cli
