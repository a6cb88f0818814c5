#include "apps/cli/section_text.h"

#include "apps/cli/table.h"
#include "apps/cli/text.h"

namespace cli {
namespace {

namespace section = bxtsg::outcome_section;
using bxtsg::OutcomePart;
using bxtsg::OutcomeRows;

constexpr std::size_t kCellLimit = 48;
constexpr const char* kOtherQuantity = "other quantity";

Paint paintOf(std::int32_t rowState) {
    switch (rowState) {
        case 1: return Paint::Red;
        case 2: return Paint::Green;
        case 3: return Paint::Yellow;
        default: return Paint::None;
    }
}

/// The word of a line and its colour.
Cell stateOf(const RowSide& reference, const RowSide& compare, bool quantities) {
    if (!reference.name) return {rowWord(compare.state), paintOf(compare.state)};
    if (!compare.name) return {rowWord(reference.state), paintOf(reference.state)};
    if (reference.state != compare.state) {
        return {rowWord(reference.state) + std::string(" / ") + rowWord(compare.state),
                Paint::Yellow};
    }
    if (quantities && reference.state == 0 && *reference.value != *compare.value) {
        return {kOtherQuantity, Paint::Yellow};
    }
    return {rowWord(reference.state), paintOf(reference.state)};
}

Cell valueCell(const RowSide& side) {
    return {side.name ? printable(*side.value) : std::string(), Paint::None};
}

/// Adds the lines of one section or part; false when there were none to add.
bool addLines(const OutcomeRows& rows, const std::string& indent, bool quantities, bool changesOnly,
              Table& table) {
    bool any = false;
    for (const RowPair& pair : pairRows(rows.referenceNames, rows.compareNames)) {
        const RowSide reference = referenceRow(rows, pair.reference);
        const RowSide compare = compareRow(rows, pair.compare);
        Cell state = stateOf(reference, compare, quantities);
        if (changesOnly && state.paint == Paint::None) continue;
        any = true;
        const std::wstring& name = reference.name ? *reference.name : *compare.name;
        table.add({{indent + printable(name), state.paint},
                   valueCell(reference),
                   valueCell(compare),
                   std::move(state)});
    }
    return any;
}

Table emptyTable() {
    Table table(kCellLimit);
    table.add({{"", Paint::None}, {"REFERENCE", Paint::Faint}, {"COMPARE", Paint::Faint}});
    return table;
}

std::string titled(const char* title, const Table& table, bool any, bool nothing,
                   const TextReportOptions& options) {
    const std::string head = std::string(title) + "\n";
    if (any) return head + table.text(options.colour) + "\n";
    return head + (nothing ? "  nothing in either file\n\n" : "  no differences\n\n");
}

std::string rowsReport(const char* title, const OutcomeRows& rows, bool quantities,
                       const TextReportOptions& options) {
    Table table = emptyTable();
    const bool any = addLines(rows, "", quantities, options.changesOnly, table);
    const bool nothing = rows.referenceNames.empty() && rows.compareNames.empty();
    return titled(title, table, any, nothing, options);
}

const OutcomePart* partAt(const std::vector<OutcomePart>& parts, std::int32_t index) {
    return index < 0 ? nullptr : &parts[static_cast<std::size_t>(index)];
}

Cell partState(const OutcomePart* reference, const OutcomePart* compare) {
    if (!reference) return {rowWord(2), paintOf(2)};
    if (!compare) return {rowWord(1), paintOf(1)};
    const bool different = reference->isDifferent || compare->isDifferent;
    return {rowWord(different ? 3 : 0), paintOf(different ? 3 : 0)};
}

std::string partsReport(const bxtsg::SectionsOutcome& lists, const TextReportOptions& options) {
    Table table = emptyTable();
    bool any = false;
    for (const bxtsg::OutcomeRow& row : lists.partRows) {
        const OutcomePart* const reference = partAt(lists.referenceParts, row.reference);
        const OutcomePart* const compare = partAt(lists.compareParts, row.compare);
        Cell state = partState(reference, compare);
        if (options.changesOnly && state.paint == Paint::None) continue;
        any = true;
        const std::wstring& name = compare ? compare->name : reference->name;
        table.add({{printable(name), state.paint},
                   {"", Paint::None},
                   {"", Paint::None},
                   std::move(state)});
        addLines(rowsOf(reference, compare), "  ", false, options.changesOnly, table);
    }
    return titled("Attributes of parts", table, any, lists.partRows.empty(), options);
}

void append(std::string& text, std::size_t number, const char* what) {
    if (number == 0) return;
    if (!text.empty()) text += ", ";
    text += std::to_string(number) + " " + what;
}

std::string summaryOf(const char* title, const RowCounts& counts,
                      const char* differentWord = "different") {
    std::string text;
    append(text, counts.onlyInReference, "only in reference");
    append(text, counts.onlyInCompare, "only in compare");
    append(text, counts.different, differentWord);
    return std::string(title) + ": " + (text.empty() ? "same" : text) + "; ";
}

}  // namespace

std::string sectionsReport(const bxtsg::SectionsOutcome& lists, const TextReportOptions& options) {
    const Sections& wanted = options.sections;
    const bool attributes = isSwitchedOn(lists, section::Attributes);
    std::string text;
    if (wanted.file) text += rowsReport("File information", lists.fileInformation, false, options);
    if (wanted.bom && isSwitchedOn(lists, section::BillOfMaterials)) {
        text += rowsReport("Bill of materials", lists.billOfMaterials, true, options);
    }
    if (wanted.attributes && attributes) {
        text += rowsReport("Attributes", lists.attributes, false, options);
    }
    if (wanted.parts && attributes) text += partsReport(lists, options);
    if (wanted.pmi && isSwitchedOn(lists, section::Pmi)) {
        text += rowsReport("PMI", lists.pmi, false, options);
    }
    return text;
}

std::string sectionsSummary(const bxtsg::SectionsOutcome& lists, const Counts& counts) {
    std::string text;
    if (isSwitchedOn(lists, section::BillOfMaterials)) {
        text += summaryOf("bill of materials", counts.bom, kOtherQuantity);
    }
    if (isSwitchedOn(lists, section::Attributes)) {
        text += summaryOf("attributes", counts.attributes);
        text += summaryOf("attributes of parts", counts.partAttributes);
    }
    if (isSwitchedOn(lists, section::Pmi)) text += summaryOf("PMI", counts.pmi);
    return text;
}

}  // namespace cli
