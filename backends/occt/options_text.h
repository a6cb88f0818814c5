#pragma once

#include <optional>
#include <string>

#include "platform/hps/import_options.h"

namespace occt {

/// The ten import options as one word for a helper's command line and for keys: equal exactly
/// for options that read the same. Enumerations outside their range become the nearest value.
std::string formatOptions(const HPS::Exchange::ImportOptions& options);

/// Nothing for a text that formatOptions() did not make.
std::optional<HPS::Exchange::ImportOptions> parseOptions(const std::string& text);

}  // namespace occt
