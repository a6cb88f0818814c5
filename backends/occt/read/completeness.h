#pragma once

#include <string>
#include <vector>

#include "backends/occt/read/step_translation.h"
#include "backends/occt/step/part21.h"

namespace occt {

/// What the file declares and the translation lacks, one sentence each: faces of shells, bodies.
std::vector<std::string> translationGaps(const step::Part21& file,
                                         const StepTranslation& translation);

}  // namespace occt
