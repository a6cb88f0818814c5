#pragma once

namespace cli {

/// Catches SIGINT, SIGTERM and SIGHUP from now on, so that a run can end in order and leave
/// nothing behind, and ignores SIGPIPE, which shows as a failed write instead. A second such
/// signal ends the program at once.
void catchInterrupts();

/// Signal that asked the program to end; 0 for none. Safe from any thread.
int interrupted();

}  // namespace cli
