#pragma once

#include <string>
#include <vector>

#include "extract/item_diff_state.h"

namespace reports {

using Column = std::vector<std::wstring>;
using States = std::vector<extract::ItemDiffState>;

/// One table of a report as columns of texts. A table that a report can use has four or more:
/// compare names, compare values, reference names, reference values; in the product structure
/// indented names and the texts of their states. The sides may have different lengths.
using ReportTable = std::vector<Column>;

/// Positions of the columns.
namespace column {
constexpr std::size_t kCompareName = 0;
constexpr std::size_t kCompareValue = 1;
constexpr std::size_t kReferenceName = 2;
constexpr std::size_t kReferenceValue = 3;
constexpr std::size_t kCount = 4;
}  // namespace column

/// A table of copies of these columns.
ReportTable BuildColumnTable(const Column& compareNames, const Column& compareValues,
                             const Column& referenceNames, const Column& referenceValues);

/// Whether a table has all its columns.
bool HasAllColumns(const ReportTable& table);

/// Whether a table has too few columns or no name on either side.
bool IsEmptyTable(const ReportTable& table);

/// The states of the rows of both sides of four tables. A section that is switched off has
/// empty lists.
struct RowStates {
    States fileInfoCompare;
    States fileInfoReference;
    States bomCompare;
    States bomReference;
    States attributesCompare;
    States attributesReference;
    States pmiCompare;
    States pmiReference;
};

}  // namespace reports
