#pragma once

#include "platform/os/modules.h"

namespace posix {

/// Shared libraries by the dynamic loader. Safe from any thread.
class PosixModules final : public os::Modules {
public:
    std::unique_ptr<os::Module> load(const std::wstring& name) override;
};

}  // namespace posix
