#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "diff/part_attributes.h"
#include "reports/csv_report_writer.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"

namespace reports {
namespace {

namespace id = resources::id;
using extract::AttributeEntry;
using extract::PartAttributes;
using PartsByName = std::unordered_map<std::wstring_view, const PartAttributes*>;

/// The first part of each name.
PartsByName firstByName(const std::vector<PartAttributes>& parts) {
    PartsByName byName;
    byName.reserve(parts.size());
    for (const PartAttributes& part : parts) byName.emplace(part.name, &part);
    return byName;
}

const PartAttributes* find(const PartsByName& byName, std::wstring_view name) {
    const auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

/// The first value of each key.
class Values {
public:
    explicit Values(const PartAttributes* part) {
        if (!part) return;
        for (const AttributeEntry& entry : part->attributes)
            values_.emplace(entry.key, entry.value);
    }
    std::wstring_view of(std::wstring_view key) const {
        const auto found = values_.find(key);
        return found == values_.end() ? std::wstring_view() : found->second;
    }

private:
    std::unordered_map<std::wstring_view, std::wstring_view> values_;
};

void putRow(CsvStream& stream, std::initializer_list<std::wstring_view> texts) {
    const wchar_t* gap = L"";
    for (const std::wstring_view text : texts) {
        stream.Put(gap);
        stream.Put(CsvReportWriter::QuoteCsvField(text));
        gap = L",";
    }
    stream.Put(L"\r\n");
}

void putPart(CsvStream& stream, std::wstring_view name, const PartAttributes* reference,
             const PartAttributes* compare) {
    stream.Put(CsvReportWriter::QuoteCsvField(name));
    stream.Put(L",,,,,\r\n");
    const Values referenceValues(reference);
    const Values compareValues(compare);
    std::size_t row = 0;
    for (const std::wstring_view key : diff::KeysOf(reference, compare)) {
        const std::wstring number = std::to_wstring(++row);
        putRow(stream, {number, key, referenceValues.of(key), number, key, compareValues.of(key)});
    }
    stream.Put(L"\r\n");
}

}  // namespace

void CsvReportWriter::WritePartAttributeBlock(CsvStream& stream,
                                              const std::vector<PartAttributes>& referenceParts,
                                              const std::vector<PartAttributes>& compareParts) {
    const CsvHeader leftHeader = MakeCsvHeader(id::kReportReferenceFile, id::kName, id::kValue);
    const CsvHeader rightHeader = MakeCsvHeader(id::kReportCompareFile, id::kName, id::kValue);
    stream.Put(resources::text(id::kPartLevelAttributes));
    stream.Put(L"\r\n");
    putRow(stream, {leftHeader.index, leftHeader.name, leftHeader.value, rightHeader.index,
                    rightHeader.name, rightHeader.value});
    const PartsByName references = firstByName(referenceParts);
    const PartsByName compares = firstByName(compareParts);
    for (const PartAttributes& part : referenceParts) {
        putPart(stream, part.name, find(references, part.name), find(compares, part.name));
    }
    std::unordered_set<std::wstring_view> written;
    for (const PartAttributes& part : compareParts) {
        const bool isNew = !references.count(part.name) && written.insert(part.name).second;
        if (isNew) putPart(stream, part.name, nullptr, find(compares, part.name));
    }
}

}  // namespace reports
