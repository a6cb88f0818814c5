#pragma once

#include <memory>

#include "platform/os/file_writer.h"

namespace posix {

/// Writes the user's documents under exactly the names that are given.
class PosixFileWriter final : public os::FileWriter {
public:
    std::unique_ptr<os::OutputFile> create(const std::wstring& path) override;
    bool takeFailure() override;

private:
    std::shared_ptr<bool> failed_ = std::make_shared<bool>(false);  // files may outlive the writer
};

}  // namespace posix
