#pragma once

#include "platform/os/worker_thread.h"

namespace posix {

/// Workers on threads of this process. A killed worker is not torn down in the middle of a
/// statement: its token is withdrawn, its registered kills run, and it is waited for. A body must
/// therefore do its long work where a registered kill can end it.
class PosixWorkerThreads final : public os::WorkerThreads {
public:
    std::unique_ptr<os::WorkerThread> start(std::function<std::uint32_t()> body) override;
    os::RunToken* current() override;
};

}  // namespace posix
