#pragma once

#include "backends/occt/read/reader.h"

namespace occt {

/// Reader of STEP files: the clear text encoding of ISO 10303-21.
std::optional<HPS::Exchange::ImportCause> readStep(const ReadRequest& request, DescribedModel& out);

}  // namespace occt
