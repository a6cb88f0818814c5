#pragma once

#include <memory>

#include "platform/os/child_process.h"
#include "platform/os/clock.h"
#include "platform/os/debug_output.h"
#include "platform/os/file_writer.h"
#include "platform/os/files.h"
#include "platform/os/key_store.h"
#include "platform/os/modules.h"
#include "platform/os/worker_thread.h"

namespace os {

/// What the application puts behind this folder's contracts. Filled before the plug-in is
/// created, on the user-interface thread, and not changed while a worker runs.
struct Services {
    std::shared_ptr<Clock> clock;
    std::shared_ptr<KeyStore> keyStore;
    std::shared_ptr<WorkerThreads> workers;
    std::shared_ptr<ChildProcesses> processes;
    std::shared_ptr<DebugOutput> debug;
    std::shared_ptr<Files> files;
    std::shared_ptr<FileWriter> writer;
    std::shared_ptr<Modules> modules;
};

/// The installed services. A member that was never installed is null.
Services& services();

}  // namespace os
