#include "backends/occt/multi_body.h"

#include "backends/occt/tree/occt_model.h"

namespace occt {

bool isMultiBody(const HPS::Exchange::Component& component) {
    const auto* const model = dynamic_cast<const OcctModel*>(component.Provider().get());
    return model != nullptr && model->isMultiBody(component.Id());
}

}  // namespace occt
