#pragma once

#include <string>

#include "extract/compare_job.h"
#include "platform/hps/import_options.h"

namespace workflow {

/// Key of the import settings of the running executable, relative to the user's root. Each host
/// has settings of its own.
void ImportSettingsKey(const extract::CompareJob& job, std::wstring& out);

/// Puts the user's import settings into a kit. A missing value counts as its default; without
/// the key, or when it can't be opened with full access, the kit stays as it is.
void ApplyImportSettings(const extract::CompareJob& job, HPS::Exchange::ImportOptionsKit& kit);

}  // namespace workflow
