#include "extract/attributes.h"

#include <algorithm>
#include <exception>

#include "extract/attribute_text.h"
#include "extract/naming.h"
#include "extract/no_case_index.h"
#include "platform/hps/component_type.h"
#include "platform/hps/exception.h"
#include "platform/os/debug_output.h"
#include "platform/os/utf8.h"

namespace extract {
namespace {

AttributeEntry readEntry(const HPS::Metadata& metadata) {
    AttributeEntry entry;
    entry.key = ReadText(metadata.GetName());
    MetadataValueToText(metadata, entry.value);
    return entry;
}

std::wstring shown(std::wstring text) {
    return text.empty() ? std::wstring(kEmptyText) : std::move(text);
}

// Reads the records of one model; its index serves all of them.
class PartReader {
public:
    explicit PartReader(std::vector<PartAttributes>& parts) : parts_(parts) {}

    void read(const HPS::Component& model);

private:
    void readOccurrences(const HPS::Component& root, const std::wstring& rootName);
    void addAttributes(const HPS::Component& component, PartAttributes& part);

    std::vector<PartAttributes>& parts_;
    NoCaseIndex keys_;
};

void PartReader::read(const HPS::Component& model) {
    if (model.Empty() || model.GetSubcomponents().empty()) return;
    const HPS::Component root = model.GetSubcomponents()[0];
    if (root.Empty()) return;
    const std::wstring rootName = ReadName(root);
    readOccurrences(root, rootName);
    std::stable_sort(
        parts_.begin(), parts_.end(),
        [](const PartAttributes& a, const PartAttributes& b) { return a.name < b.name; });
    if (!parts_.empty() || root.GetAllMetadata().empty()) return;
    PartAttributes part;
    part.name = rootName;
    part.fileName = ReadFileName(root);
    addAttributes(root, part);
    parts_.push_back(std::move(part));
}

void PartReader::readOccurrences(const HPS::Component& root, const std::wstring& rootName) {
    const auto occurrences = root.GetAllSubcomponents(HPS::ComponentType::ProductOccurrence);
    std::int32_t index = -1;
    for (const HPS::Component& occurrence : occurrences) {
        ++index;
        if (occurrence.Empty()) continue;
        std::wstring name = ReadName(occurrence);
        if (name == rootName) continue;
        PartAttributes part;
        part.name = std::move(name);
        part.occurrenceIndex = index;
        part.fileName = ReadFileName(occurrence);
        part.hasSubcomponents = !occurrence.GetSubcomponents().empty();
        addAttributes(occurrence, part);
        parts_.push_back(std::move(part));
    }
}

void PartReader::addAttributes(const HPS::Component& component, PartAttributes& part) {
    const std::vector<HPS::Metadata> all = component.GetAllMetadata();
    part.attributes.reserve(all.size());  // and no more: the index refers to the keys
    keys_.Restart(all.size());
    for (const HPS::Metadata& metadata : all) {
        AttributeEntry entry = readEntry(metadata);
        entry.key = CleanAttributeText(std::move(entry.key));
        if (keys_.Find(entry.key) != NoCaseIndex::kNone) continue;
        entry.value = CleanAttributeText(std::move(entry.value));
        part.attributes.push_back(std::move(entry));
        keys_.Insert(part.attributes.back().key, part.attributes.size() - 1);
    }
}

void report(std::wstring_view line, const char* cause = "") {
    os::debugOutput(line);
    if (*cause != '\0') os::debugOutput(os::toWide(cause));
}

}  // namespace

void ExtractFileAttributes(const HPS::Component& modelComponent, std::vector<std::wstring>& names,
                           std::vector<std::wstring>& values) {
    if (modelComponent.Empty() || modelComponent.GetSubcomponents().empty()) return;
    const auto occurrences = modelComponent.GetSubcomponents()[0].GetAllSubcomponents(
        HPS::ComponentType::ProductOccurrence);
    if (occurrences.empty()) return;
    std::vector<AttributeEntry> entries;
    for (const HPS::Metadata& metadata : occurrences[0].GetAllMetadata()) {
        entries.push_back(readEntry(metadata));
    }
    std::stable_sort(
        entries.begin(), entries.end(),
        [](const AttributeEntry& a, const AttributeEntry& b) { return a.key < b.key; });
    names.reserve(names.size() + entries.size());
    values.reserve(values.size() + entries.size());
    for (AttributeEntry& entry : entries) {
        names.push_back(shown(std::move(entry.key)));
        values.push_back(shown(std::move(entry.value)));
    }
}

void ExtractComponentAttributes(const HPS::Component& modelComponent,
                                std::vector<PartAttributes>& parts) {
    try {
        PartReader(parts).read(modelComponent);
    } catch (const HPS::InvalidObjectException& exception) {
        report(L"Invalid object in AttribDataLoader::ExtractComponentAttributes\n",
               exception.what());
    } catch (const HPS::IndexOutOfRangeException& exception) {
        report(L"Index out of range in AttribDataLoader::ExtractComponentAttributes\n",
               exception.what());
    } catch (const std::exception& exception) {
        report(L"Exception in AttribDataLoader::ExtractComponentAttributes\n", exception.what());
    } catch (...) {
        report(L"Unknown exception in AttribDataLoader::ExtractComponentAttributes\n");
    }
}

}  // namespace extract
