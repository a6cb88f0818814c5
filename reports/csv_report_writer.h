#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reports/csv_stream.h"
#include "reports/report_content.h"

namespace reports {

/// One line of a tree that was drawn by leading blanks.
struct IndentedLine {
    std::int32_t depth = 0;  ///< half the number of leading blanks
    std::wstring_view text;  ///< what stands behind them; refers to the line
};

/// Captions of a block's columns, three for each side.
struct CsvHeader {
    std::wstring index;
    std::wstring name;
    std::wstring value;
};

/// Texts of the index and of two captions, these with the name of a side in front.
CsvHeader MakeCsvHeader(std::uint32_t sideId, std::uint32_t nameId, std::uint32_t valueId);

/// Writes results as one comma-separated file that shows both sides next to each other, without
/// colours and states. User-interface thread.
class CsvReportWriter {
public:
    /// Keeps copies, as every writer of reports does. No byte of the file depends on them.
    void SetRowStates(const RowStates& states) { states_ = states; }
    const RowStates& rowStates() const { return states_; }

    /// Returns 0, or -1 when the file can't be created. A file that was created and then could
    /// not be written whole counts as written; the machine's file writer knows.
    int WriteCsvReport(const std::wstring& path, const ReportContent& content) const;

    /// A block of rows, two or three fields on each side, closed by an empty line. A list that
    /// is shorter than the longer list of names gives empty fields.
    static void WriteTableBlock(CsvStream& stream, const std::wstring& title,
                                const CsvHeader& leftHeader, const CsvHeader& rightHeader,
                                const Column& leftNames, const Column& leftValues,
                                const Column& rightNames, const Column& rightValues, bool indexed);

    /// Both trees by columns, the right one behind the deepest column of the left one and one
    /// empty column. Takes time and space for every row times every column.
    /// Nobody reads the states.
    static void WriteProductStructureBlock(CsvStream& stream, const Column& referenceNames,
                                           const Column& referenceStates,
                                           const Column& compareNames);

    /// One group of rows per part name, those of the reference first. Names and keys are matched
    /// exactly, and of equal ones the first counts. Linear in the attributes.
    static void WritePartAttributeBlock(CsvStream& stream,
                                        const std::vector<extract::PartAttributes>& referenceParts,
                                        const std::vector<extract::PartAttributes>& compareParts);

    /// The text between double quotes, its own doubled.
    static std::wstring QuoteCsvField(std::wstring_view text);

    /// Depth and text of each line.
    static std::vector<IndentedLine> ParseIndentedLines(const Column& lines);

private:
    RowStates states_;
};

}  // namespace reports
