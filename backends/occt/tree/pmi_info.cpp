#include "backends/occt/pmi_info.h"

#include "backends/occt/tree/occt_model.h"
#include "platform/os/utf8.h"

namespace occt {

bool pmiInfo(const HPS::Exchange::Component& component, bxtexchange::PMIInfos& infos) {
    const auto* const model = dynamic_cast<const OcctModel*>(component.Provider().get());
    const DescribedPmi* const pmi = model != nullptr ? model->pmi(component.Id()) : nullptr;
    if (pmi == nullptr) return false;
    infos.text = os::toWide(pmi->text);
    return true;
}

}  // namespace occt
