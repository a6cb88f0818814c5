#pragma once

#include "platform/hps/component.h"

namespace bxtexchange {

/// Questions about items of a part.
class PMIInfoPopulator {
public:
    /// True when the component is one of several bodies of one part. False for an empty one.
    static bool isMultiBody(const HPS::Exchange::Component& component);
};

}  // namespace bxtexchange
