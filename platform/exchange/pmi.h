#pragma once

#include <string>

#include "platform/hps/component.h"

namespace bxtexchange {

/// What an item of product and manufacturing information says.
struct PMIInfos {
    /// One line in the notation of its standard; empty when nothing is known.
    std::wstring text;
};

/// Questions about items of a part.
class PMIInfoPopulator {
public:
    /// True when the component is one of several bodies of one part. False for an empty one.
    static bool isMultiBody(const HPS::Exchange::Component& component);

    /// Fills `infos` with what the PMI component says. False, with `infos` untouched, for an
    /// empty component, for one that is no PMI, and without an installed answer.
    static bool getPMIInfo(const HPS::Exchange::Component& component, PMIInfos& infos);
};

}  // namespace bxtexchange
