#pragma once

#include <optional>

#include "backends/occt/read/input_files.h"
#include "backends/occt/read/reader.h"

namespace occt {

/// What stays the same for all files of one import.
struct ReadContext {
    const HPS::Exchange::ImportOptions& options;
    ProgressReporter& progress;
};

/// Reads the first of the files and all that its products need of the others, measures every
/// body, and puts the content of the other files where the products stand that refer to them.
/// Each file is read once, however often it is used. A file that is missing or can't be read, or
/// that leads back to one it came from, leaves a gap and a body that can't be compared; a cause
/// comes back only for the first file, and for a whole that is too large. `out` names shapes by
/// labels of `document`; measurements and external content are done with and come back empty.
std::optional<HPS::Exchange::ImportCause> readWithLinks(const InputFiles& files,
                                                        const ReadContext& context,
                                                        BinaryDocument& document,
                                                        DescribedModel& out);

}  // namespace occt
