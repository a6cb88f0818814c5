#pragma once

#include "backends/occt/read/reader.h"

namespace occt {

// Readers of files of triangles. Each body is one item, a mesh that is one face of triangles.
std::optional<HPS::Exchange::ImportCause> readStl(const ReadRequest& request, DescribedModel& out);
std::optional<HPS::Exchange::ImportCause> readObj(const ReadRequest& request, DescribedModel& out);
std::optional<HPS::Exchange::ImportCause> readPly(const ReadRequest& request, DescribedModel& out);
std::optional<HPS::Exchange::ImportCause> readGltf(const ReadRequest& request, DescribedModel& out);
std::optional<HPS::Exchange::ImportCause> readThreeMf(const ReadRequest& request,
                                                      DescribedModel& out);

}  // namespace occt
