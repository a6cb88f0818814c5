#pragma once

#include <memory>
#include <string>

#include "platform/bxt/schema.h"
#include "platform/hps/import.h"

namespace extract {

/// The files of one comparison and their imports. One record serves all runs; each run writes
/// over it. Its members are released from the last to the first, so that imports that still run
/// are let go before the paths that they read. User-interface thread.
struct CompareJob {
    std::wstring referencePath;
    std::wstring comparePath;
    /// Factory of the document that was active when the command was given.
    std::shared_ptr<bxtsg::IFactory> sourceFactory;
    /// Kept alive with the job; nobody reads it.
    std::shared_ptr<void> heldObject;
    HPS::Exchange::ImportNotifier compareNotifier;
    HPS::Exchange::ImportNotifier referenceNotifier;
    /// Length in millimetres of the unit that was read from a file on disk; negative until one
    /// was read. It outlives the runs.
    double modelUnitCache = -1.0;
};

}  // namespace extract
