#pragma once

#include "backends/occt/document/description.h"
#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"
#include "platform/hps/import_options.h"

namespace occt {

/// Adds to a description what the file's text says besides geometry, as far as the options ask
/// for it: metadata, features, PMI and construction geometry. The definitions must begin with
/// one for each product, in the products' order, and their usages must stand in that order too.
void annotate(Description& description, const step::Part21& file, const step::Products& products,
              const HPS::Exchange::ImportOptions& options);

}  // namespace occt
