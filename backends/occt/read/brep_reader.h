#pragma once

#include "backends/occt/read/reader.h"

namespace occt {

/// Reader of BREP files, text and binary: one part with all bodies of the file, in millimetres.
std::optional<HPS::Exchange::ImportCause> readBrep(const ReadRequest& request, DescribedModel& out);

}  // namespace occt
