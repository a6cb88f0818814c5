#pragma once

#include "backends/occt/document/binary_document.h"
#include "backends/occt/read/reader.h"
#include "backends/occt/read/step_translation.h"
#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"
#include "platform/hps/import_options.h"

namespace occt {

/// Builds the description of a translated file and sees to it that every shape that it names
/// has a label of the document.
DescribedModel describe(const step::Part21& file, const step::Products& products,
                        const StepTranslation& translation,
                        const HPS::Exchange::ImportOptions& options, BinaryDocument& document);

}  // namespace occt
