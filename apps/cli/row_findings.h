#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/bxt/compare_outcome.h"

namespace cli {

/// One line of a section: two rows of equal name, or one that the other side lacks.
struct RowPair {
    std::ptrdiff_t reference = -1;  ///< index of a row; -1 for none
    std::ptrdiff_t compare = -1;
};

/// Every row of both sides once, the n-th of a name beside the n-th of that name, as far as
/// possible in the order of both sides. Names must be equal to the letter. Linear.
std::vector<RowPair> pairRows(const std::vector<std::wstring>& reference,
                              const std::vector<std::wstring>& compare);

/// The rows of one side that a line needs, wherever they come from.
struct RowSide {
    const std::wstring* name = nullptr;  ///< null where the line has no such row
    const std::wstring* value = nullptr;
    std::int32_t state = 0;  ///< of bxtsg::OutcomeRows
};

/// One side's row of that index; nothing for -1.
RowSide referenceRow(const bxtsg::OutcomeRows& rows, std::ptrdiff_t index);
RowSide compareRow(const bxtsg::OutcomeRows& rows, std::ptrdiff_t index);

/// What one part's attributes look like as rows.
bxtsg::OutcomeRows rowsOf(const bxtsg::OutcomePart* reference, const bxtsg::OutcomePart* compare);

/// How many lines of a section have which state.
struct RowCounts {
    std::size_t referenceRows = 0;
    std::size_t compareRows = 0;
    std::size_t onlyInReference = 0;
    std::size_t onlyInCompare = 0;
    std::size_t different = 0;  ///< in a bill of materials: in another quantity

    bool any() const { return onlyInReference + onlyInCompare + different > 0; }
    void add(const RowCounts& other);
};

/// Counts by the states of the rows. What the header of a file says about the file itself, its
/// name and its time, counts as a row and as nothing else.
RowCounts countRows(const bxtsg::OutcomeRows& rows);

/// The same of a bill of materials, whose states leave quantities out.
RowCounts countBom(const bxtsg::OutcomeRows& rows);

/// All attributes of all parts.
RowCounts countParts(const bxtsg::SectionsOutcome& lists);

/// "same", "only in reference", "only in compare", "different"; "same" for any other number.
const char* rowWord(std::int32_t state);

/// Whether the switches leave a section of that number (bxtsg::outcome_section).
bool isSwitchedOn(const bxtsg::SectionsOutcome& lists, std::int32_t section);

}  // namespace cli
