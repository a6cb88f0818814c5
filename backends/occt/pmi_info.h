#pragma once

#include "platform/exchange/pmi.h"

namespace occt {

/// Fills `infos` with the line that the file gives for an item of product and manufacturing
/// information. False, with `infos` untouched, for any other component, an empty one included.
/// For bxtexchange::Services::getPMIInfo; may be asked from any thread.
bool pmiInfo(const HPS::Exchange::Component& component, bxtexchange::PMIInfos& infos);

}  // namespace occt
