#pragma once

#include "backends/occt/read/reader.h"

namespace occt {

/// Reader of IGES files in fixed lines. Solids, surfaces, curves and points become bodies; groups,
/// subfigures and their instances become the product structure.
std::optional<HPS::Exchange::ImportCause> readIges(const ReadRequest& request, DescribedModel& out);

}  // namespace occt
