#include "extract/bom_rows.h"

#include <unordered_map>

#include "extract/naming.h"
#include "platform/hps/component_type.h"

namespace extract {
namespace {

// Counts parts into rows. Names end at their first zero, so a zero separates name and file.
class BOMCollector {
public:
    explicit BOMCollector(std::vector<BOMRow>& rows) : rows_(rows) {
        for (std::size_t i = 0; i < rows.size(); ++i) positions_.emplace(keyOf(rows[i]), i);
    }

    void collect(const HPS::Component& top);

private:
    static std::wstring keyOf(const BOMRow& row) { return row.partName + L'\0' + row.fileName; }
    void addPart(const HPS::Component& part);

    std::vector<BOMRow>& rows_;
    std::unordered_map<std::wstring, std::size_t> positions_;
};

void BOMCollector::collect(const HPS::Component& top) {
    std::vector<HPS::Component> waiting = {top};  // the next component on top
    while (!waiting.empty()) {
        const HPS::Component component = std::move(waiting.back());
        waiting.pop_back();
        const HPS::ComponentArray below = component.GetSubcomponents();
        const bool occurrence =
            component.GetComponentType() == HPS::ComponentType::ProductOccurrence;
        if (occurrence && !below.empty() &&
            component.GetAllSubcomponents(HPS::ComponentType::ProductOccurrence).size() <= 1) {
            addPart(component);
        }
        for (std::size_t i = below.size(); i-- > 0;) waiting.push_back(below[i]);
    }
}

void BOMCollector::addPart(const HPS::Component& part) {
    BOMRow row;
    row.partName = ReadName(part);
    row.fileName = ReadFileName(part);
    const auto [known, isNew] = positions_.emplace(keyOf(row), rows_.size());
    if (isNew) {
        rows_.push_back(std::move(row));
    } else {
        ++rows_[known->second].quantity;
    }
}

}  // namespace

void LoadBOM(const HPS::Component& modelComponent, std::vector<BOMRow>& rows) {
    if (modelComponent.Empty()) return;
    BOMCollector collector(rows);
    for (const HPS::Component& component : modelComponent.GetSubcomponents()) {
        collector.collect(component);
    }
}

void CollectBOMRows(const HPS::Component& component, std::vector<BOMRow>& rows) {
    BOMCollector(rows).collect(component);
}

}  // namespace extract
