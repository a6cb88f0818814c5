#pragma once

#include <memory>
#include <string>

#include "platform/bxt/application.h"
#include "platform/exchange/doc_comparer.h"

namespace workflow {

/// What the user-interface thread and the worker of a run share. There is no lock; the order of
/// events protects it:
/// - The user-interface thread writes paths, status manager and application before it starts the
///   worker, and leaves everything alone until the progress window has ended and the worker has
///   been closed.
/// - The worker writes status, result path and comparer through its run token, so that a killed
///   worker writes nothing, and writes status and result path at one go.
struct SharedState {
    std::wstring sharedReferencePath;
    std::wstring sharedComparePath;
    /// Path of the result file that belongs to sharedStatus.
    std::wstring sharedResultPath;
    bxtimp::IDocComparer::Status sharedStatus = bxtimp::IDocComparer::NothingCompared;
    bxt::IStatusManager* sharedStatusManager = nullptr;  ///< not owned
    std::shared_ptr<bxt::IApplication> sharedApplication;
    /// Lives until a result document has taken its record, or until the plug-in goes.
    std::unique_ptr<bxtexchange::HOOPSDOCComparer> sharedComparer;
};

/// The one state of this module.
SharedState& shared();

}  // namespace workflow
