#pragma once

#include <string>
#include <vector>

#include "platform/os/child_process.h"
#include "platform/os/confinement.h"

namespace occt {

/// Body of the helper's `import` command: reads one file, leaves the document in a folder, tells
/// the host about progress, gaps and failures. Returns the process's exit code, 0 for success.
/// The process is confined once the input is read and before any reader sees it; null: it is not.
int runImportHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel,
                    os::Confinement* confinement = nullptr);

}  // namespace occt
