#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backends/occt/import_service.h"
#include "platform/exchange/services.h"
#include "platform/os/child_process.h"

namespace comparer {

struct Options {
    /// Lengths closer than this are equal, in millimetres.
    double lengthToleranceMm = 1e-3;
    /// Relative differences of volumes, areas and moments below this are none.
    double relativeTolerance = 1e-5;
};

/// Services of the exchange folder: a comparer that works in a helper process on the documents
/// that `imports` keeps, and the readers of its result file.
bxtexchange::Services makeServices(std::shared_ptr<occt::ImportService> imports,
                                   const Options& options);

/// Bodies of the helper's `compare` and `keep` commands. Both return the process's exit code.
int runCompareHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel);
int runKeepHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel);

}  // namespace comparer
