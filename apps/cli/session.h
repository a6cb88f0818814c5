#pragma once

#include "apps/cli/options.h"

namespace cli {

/// One comparison from the command line to the exit code: fills the registries, loads the plug-in
/// into a headless host, gives the Compare command, and prints what the result document holds.
int runSession(const Options& options);

/// What --settings and --save ask for, without a comparison.
int runSwitches(const Options& options);

}  // namespace cli
