#include "extract/pmi_rows.h"

#include <algorithm>

#include "extract/item_diff_state.h"
#include "extract/naming.h"
#include "platform/exchange/pmi.h"
#include "platform/hps/component_type.h"

namespace extract {
namespace {

HPS::ComponentArray pmiOf(const HPS::Component& model) {
    if (model.Empty() || model.GetSubcomponents().empty()) return {};
    return model.GetSubcomponents()[0].GetAllSubcomponents(HPS::ComponentType::PmiMask);
}

PMIRow readRow(const HPS::Component& component) {
    bxtexchange::PMIInfos infos;
    // What it answers does not matter: an item that nobody can read is shown without a text.
    bxtexchange::PMIInfoPopulator::getPMIInfo(HPS::Exchange::Component(component), infos);
    return {ReadName(component), std::move(infos.text)};
}

}  // namespace

void LoadPMI(const HPS::Component& modelComponent, std::vector<PMIRow>& rows) {
    const HPS::ComponentArray items = pmiOf(modelComponent);
    if (items.empty()) {
        rows.push_back({L"No PMI", L"-"});
        return;
    }
    std::vector<PMIRow> found;
    for (const HPS::Component& item : items) found.push_back(readRow(item));
    std::stable_sort(found.begin(), found.end(),
                     [](const PMIRow& a, const PMIRow& b) { return a.name < b.name; });
    rows.reserve(rows.size() + found.size());
    for (PMIRow& row : found) {
        if (row.name.empty()) row.name = kEmptyText;
        if (row.value.empty()) row.value = kEmptyText;
        rows.push_back(std::move(row));
    }
}

}  // namespace extract
