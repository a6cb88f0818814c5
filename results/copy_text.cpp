#include "results/copy_text.h"

#include <algorithm>
#include <string_view>

#include "diff/part_attributes.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "results/part_rows.h"

namespace results {
namespace {

namespace id = resources::id;
using extract::AssemblyNode;
using extract::AttributeEntry;
using extract::PartAttributes;

constexpr std::wstring_view kGap = L"     ";
constexpr std::wstring_view kLineEnd = L"\r\n";
constexpr std::wstring_view kEmptyCell = L"-";
// Gaps, row number, dashes and line end of a line, at most.
constexpr std::size_t kLineExtra = 24;

std::wstring_view cell(const Texts& texts, std::size_t row) {
    return row < texts.size() && !texts[row].empty() ? std::wstring_view(texts[row]) : kEmptyCell;
}

std::wstring heading(std::initializer_list<std::uint32_t> captions) {
    std::wstring line;
    for (const std::uint32_t caption : captions) {
        if (!line.empty()) line += kGap;
        line += resources::text(caption);
    }
    return line;
}

std::size_t lengthOf(const Texts& texts) {
    std::size_t length = 0;
    for (const std::wstring& text : texts) length += text.size();
    return length;
}

void appendTitle(std::uint32_t captionId, std::wstring& text) {
    text += resources::text(captionId);
    text += kLineEnd;
    text += kLineEnd;
}

/// A heading, a line per name, and an empty line.
void appendBlock(const std::wstring& head, const Texts& names, const Texts& values, bool indexed,
                 std::wstring& text) {
    text.reserve(text.size() + lengthOf(names) + lengthOf(values) + names.size() * kLineExtra);
    text += head;
    text += kLineEnd;
    for (std::size_t row = 0; row < names.size(); ++row) {
        if (indexed) {
            text += std::to_wstring(row + 1);
            text += kGap;
        }
        text += cell(names, row);
        text += kGap;
        text += cell(values, row);
        text += kLineEnd;
    }
    text += kLineEnd;
}

void appendBothSides(const std::wstring& head, const SectionRows& rows, bool indexed,
                     std::wstring& text) {
    appendBlock(head, rows.referenceNames, rows.referenceValues, indexed, text);
    appendBlock(head, rows.compareNames, rows.compareValues, indexed, text);
}

std::wstring_view valueText(const AttributeEntry* entry) {
    if (!entry) return {};
    return entry->value.empty() ? kEmptyCell : std::wstring_view(entry->value);
}

const PartAttributes* partAt(const std::vector<PartAttributes>& parts, std::int32_t index) {
    return index < 0 ? nullptr : &parts[static_cast<std::size_t>(index)];
}

}  // namespace

void AppendFileInfoText(const SectionRows& rows, std::wstring& text) {
    appendTitle(id::kCopiedFileInformation, text);
    appendBlock(heading({id::kReferenceFile, id::kCopiedFileValue}), rows.referenceNames,
                rows.referenceValues, false, text);
    appendBlock(heading({id::kCompareFile, id::kCopiedFileValue}), rows.compareNames,
                rows.compareValues, false, text);
}

void AppendBomText(const SectionRows& rows, std::wstring& text) {
    appendTitle(id::kBillOfMaterials, text);
    appendBothSides(heading({id::kRowNumber, id::kPartName, id::kQuantity}), rows, true, text);
}

void AppendAttributeText(const SectionRows& rows, std::wstring& text) {
    appendTitle(id::kCopiedAttributes, text);
    appendBothSides(heading({id::kName, id::kValue}), rows, false, text);
}

void AppendPmiText(const SectionRows& rows, std::wstring& text) {
    appendTitle(id::kCopiedPmi, text);
    appendBothSides(heading({id::kRowNumber, id::kPartName, id::kCopiedPmiValue}), rows, true,
                    text);
}

void AppendPartAttributeText(const ResultData& data, std::wstring& text) {
    text += L"Part Level Attributes\r\n\r\n";
    const std::wstring head = heading({id::kName});
    for (const PartPair& pair : PairParts(data.referenceParts, data.compareParts)) {
        const PartAttributes* const reference = partAt(data.referenceParts, pair.referenceIndex);
        const PartAttributes* const compare = partAt(data.compareParts, pair.compareIndex);
        text += pair.name;
        text += kLineEnd;
        text += head;
        text += kGap;
        text += L"Reference     Compare\r\n";
        const auto keys = diff::KeysOf(reference, compare);
        const auto referenceEntries = EntriesOf(reference, keys);
        const auto compareEntries = EntriesOf(compare, keys);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            text += keys[i];
            text += kGap;
            text += valueText(referenceEntries[i]);
            text += kGap;
            text += valueText(compareEntries[i]);
            text += kLineEnd;
        }
        text += kLineEnd;
    }
}

void AppendProductStructureText(const AssemblyNode* referenceRoot, const AssemblyNode* compareRoot,
                                std::wstring& text) {
    appendTitle(id::kReportProductStructure, text);
    AppendTreeText(referenceRoot, resources::text(id::kReportReferenceFile), text);
    AppendTreeText(compareRoot, resources::text(id::kReportCompareFile), text);
}

void AppendTreeText(const AssemblyNode* root, const std::wstring& caption, std::wstring& text) {
    text += caption + L" - " + resources::text(id::kReportProductStructure);
    text += kLineEnd;
    Texts names;
    Texts states;
    FlattenPSTreeForExport(root, names, states);
    for (const std::wstring& name : names) {
        const std::size_t blanks = std::min(name.find_first_not_of(L' '), name.size());
        if (const std::size_t depth = blanks / 2; depth > 0) {
            text.append((depth - 1) * 2, L' ');
            text += L"|- ";
        }
        text.append(name, blanks);
        text += kLineEnd;
    }
    text += kLineEnd;
}

void FlattenPSTreeForExport(const AssemblyNode* root, Texts& names, Texts& states) {
    for (const AssemblyNode* node = root; node; node = extract::NextPreOrder(node, root)) {
        if (node->level < 0) continue;
        names.push_back(std::wstring(static_cast<std::size_t>(node->level) * 2, L' ') +
                        node->displayName);
        states.emplace_back(extract::StateText(node->state));
    }
}

}  // namespace results
