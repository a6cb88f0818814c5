#pragma once

#include <string>

#include "backends/comparer/instances.h"
#include "platform/exchange/doc_comparer.h"

namespace comparer {

/// What the contents of two files allow: Done when they can be compared, else why not. A file
/// without geometry is empty, not a part. `cause` gets the sentence for the log.
bxtimp::IDocComparer::Status statusFor(const Side& reference, const Side& compare,
                                       std::string& cause);

}  // namespace comparer
