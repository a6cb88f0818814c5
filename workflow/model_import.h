#pragma once

#include "extract/compare_job.h"

namespace workflow {

/// Imports both files of the job side by side and waits for both, without a time limit and
/// without serving messages. True: both notifiers of the job hold a finished import with a model.
/// False: a file does not exist (no import was started then), an import failed (the other one is
/// left running), or a model is empty. Reports nothing; causes travel with the notifiers, and
/// exceptions go to the debug output.
bool ImportModels(extract::CompareJob& job);

}  // namespace workflow
