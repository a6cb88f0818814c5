#include "reports/csv_report_writer.h"

#include <algorithm>

#include "platform/os/services.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"

namespace reports {
namespace {

namespace id = resources::id;

constexpr std::wstring_view kLineEnd = L"\r\n";

std::wstring_view at(const Column& texts, std::size_t row) {
    return row < texts.size() ? std::wstring_view(texts[row]) : std::wstring_view();
}

void putField(CsvStream& stream, std::wstring_view text) {
    stream.Put(CsvReportWriter::QuoteCsvField(text));
}

void putFields(CsvStream& stream, std::initializer_list<std::wstring_view> texts) {
    bool first = true;
    for (const std::wstring_view text : texts) {
        if (!first) stream.Put(L",");
        putField(stream, text);
        first = false;
    }
    stream.Put(kLineEnd);
}

void putTitle(CsvStream& stream, const std::wstring& title) {
    stream.Put(title);
    stream.Put(kLineEnd);
}

std::int32_t deepest(const std::vector<IndentedLine>& lines) {
    std::int32_t depth = 0;
    for (const IndentedLine& line : lines) depth = std::max(depth, line.depth);
    return depth;
}

const IndentedLine* lineAt(const std::vector<IndentedLine>& lines, std::size_t row) {
    return row < lines.size() && !lines[row].text.empty() ? &lines[row] : nullptr;
}

struct TableCaptions {
    std::uint32_t title;
    std::uint32_t name;
    std::uint32_t value;
};

constexpr TableCaptions kFileInfo{id::kInformation, id::kFileAttributes, id::kReportValue};
constexpr TableCaptions kBom{id::kBillOfMaterials, id::kReportPartName, id::kReportQuantity};
constexpr TableCaptions kAttributes{id::kReportAttributes, id::kName, id::kValue};
constexpr TableCaptions kPmi{id::kReportPmi, id::kReportPartName, id::kReportValue};

void putTable(CsvStream& stream, const TableCaptions& captions, const ReportTable& table) {
    CsvReportWriter::WriteTableBlock(
        stream, resources::text(captions.title),
        MakeCsvHeader(id::kReportReferenceFile, captions.name, captions.value),
        MakeCsvHeader(id::kReportCompareFile, captions.name, captions.value),
        table[column::kReferenceName], table[column::kReferenceValue], table[column::kCompareName],
        table[column::kCompareValue], true);
}

}  // namespace

CsvHeader MakeCsvHeader(std::uint32_t sideId, std::uint32_t nameId, std::uint32_t valueId) {
    const std::wstring side = resources::text(sideId) + L" ";
    return {resources::text(id::kIndex), side + resources::text(nameId),
            side + resources::text(valueId)};
}

int CsvReportWriter::WriteCsvReport(const std::wstring& path, const ReportContent& content) const {
    const auto& writer = os::services().writer;
    auto file = writer ? writer->create(path) : nullptr;
    if (!file) return -1;
    CsvStream stream(std::move(file));
    if (HasAllColumns(content.fileInfo)) putTable(stream, kFileInfo, content.fileInfo);
    if (!IsEmptyTable(content.productStructure)) {
        const ReportTable& tree = content.productStructure;
        WriteProductStructureBlock(stream, tree[column::kReferenceName],
                                   tree[column::kReferenceValue], tree[column::kCompareName]);
    }
    if (!IsEmptyTable(content.bom)) putTable(stream, kBom, content.bom);
    if (!IsEmptyTable(content.attributes)) putTable(stream, kAttributes, content.attributes);
    if (!content.referenceParts.empty() || !content.compareParts.empty()) {
        WritePartAttributeBlock(stream, content.referenceParts, content.compareParts);
    }
    if (!IsEmptyTable(content.pmi)) putTable(stream, kPmi, content.pmi);
    stream.Close();
    return 0;
}

void CsvReportWriter::WriteTableBlock(CsvStream& stream, const std::wstring& title,
                                      const CsvHeader& leftHeader, const CsvHeader& rightHeader,
                                      const Column& leftNames, const Column& leftValues,
                                      const Column& rightNames, const Column& rightValues,
                                      bool indexed) {
    putTitle(stream, title);
    if (indexed) {
        putFields(stream, {leftHeader.index, leftHeader.name, leftHeader.value, rightHeader.index,
                           rightHeader.name, rightHeader.value});
    } else {
        putFields(stream, {leftHeader.name, leftHeader.value, rightHeader.name, rightHeader.value});
    }
    const std::size_t rows = std::max(leftNames.size(), rightNames.size());
    for (std::size_t row = 0; row < rows; ++row) {
        const std::wstring number = std::to_wstring(row + 1);
        const auto leftName = at(leftNames, row);
        const auto leftValue = at(leftValues, row);
        const auto rightName = at(rightNames, row);
        const auto rightValue = at(rightValues, row);
        if (indexed) {
            putFields(stream, {number, leftName, leftValue, number, rightName, rightValue});
        } else {
            putFields(stream, {leftName, leftValue, rightName, rightValue});
        }
    }
    stream.Put(kLineEnd);
}

void CsvReportWriter::WriteProductStructureBlock(CsvStream& stream, const Column& referenceNames,
                                                 const Column& /*referenceStates*/,
                                                 const Column& compareNames) {
    putTitle(stream, resources::text(id::kReportProductStructure));
    const auto left = ParseIndentedLines(referenceNames);
    const auto right = ParseIndentedLines(compareNames);
    const std::int32_t rightStart = deepest(left) + 2;
    const std::int32_t columns = rightStart + deepest(right) + 1;
    const std::size_t rows = std::max(left.size(), right.size());
    for (std::size_t row = 0; row < rows; ++row) {
        const IndentedLine* const leftLine = lineAt(left, row);
        const IndentedLine* const rightLine = lineAt(right, row);
        for (std::int32_t at = 0; at < columns; ++at) {
            if (at > 0) stream.Put(L",");
            if (leftLine && at == leftLine->depth) {
                putField(stream, leftLine->text);
            } else if (rightLine && at == rightStart + rightLine->depth) {
                putField(stream, rightLine->text);
            }
        }
        stream.Put(kLineEnd);
    }
    stream.Put(kLineEnd);
}

std::wstring CsvReportWriter::QuoteCsvField(std::wstring_view text) {
    std::wstring quoted;
    quoted.reserve(text.size() + 2);
    quoted += L'"';
    for (const wchar_t character : text) {
        if (character == L'"') quoted += L'"';
        quoted += character;
    }
    quoted += L'"';
    return quoted;
}

std::vector<IndentedLine> CsvReportWriter::ParseIndentedLines(const Column& lines) {
    std::vector<IndentedLine> parsed;
    parsed.reserve(lines.size());
    for (const std::wstring_view line : lines) {
        const std::size_t blanks = std::min(line.find_first_not_of(L' '), line.size());
        parsed.push_back({static_cast<std::int32_t>(blanks / 2), line.substr(blanks)});
    }
    return parsed;
}

}  // namespace reports
