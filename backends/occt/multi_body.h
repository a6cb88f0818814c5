#pragma once

#include "platform/hps/component.h"

namespace occt {

/// True when the component is one of several B-rep bodies of one part. False for any other
/// component, an empty one included. For bxtexchange::Services::isMultiBody.
bool isMultiBody(const HPS::Exchange::Component& component);

}  // namespace occt
