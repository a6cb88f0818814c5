#pragma once

#include "backends/occt/read/reader.h"

namespace occt {

/// Reader of binary documents (XBF): products, names, placements and bodies.
std::optional<HPS::Exchange::ImportCause> readXbf(const ReadRequest& request, DescribedModel& out);

}  // namespace occt
