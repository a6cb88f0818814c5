#include "backends/posix/file_writer.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "backends/posix/io.h"
#include "backends/posix/unique_fd.h"
#include "platform/os/utf8.h"

namespace posix {
namespace {

class PosixOutputFile final : public os::OutputFile {
public:
    PosixOutputFile(UniqueFd fd, std::shared_ptr<bool> failed)
        : fd_(std::move(fd)), failed_(std::move(failed)) {}

    bool write(std::string_view bytes) override {
        return note(fd_.valid() && writeAll(fd_.get(), bytes));
    }

    bool close() override {
        // The last chance to say no for a file system that keeps what it is given for a while;
        // pipes and devices have no such thing.
        const bool whole = fd_.valid() && (::fsync(fd_.get()) == 0 || errno == EINVAL);
        fd_.reset();
        return note(whole);
    }

private:
    bool note(bool succeeded) {
        if (!succeeded) *failed_ = true;
        return succeeded;
    }

    UniqueFd fd_;
    std::shared_ptr<bool> failed_;
};

}  // namespace

std::unique_ptr<os::OutputFile> PosixFileWriter::create(const std::wstring& path) {
    const std::string bytes = os::toUtf8(path);
    // A NUL would cut the path short in the system call.
    if (bytes.empty() || bytes.find('\0') != std::string::npos) return nullptr;
    UniqueFd fd(::open(bytes.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!fd.valid()) return nullptr;
    return std::make_unique<PosixOutputFile>(std::move(fd), failed_);
}

bool PosixFileWriter::takeFailure() {
    return std::exchange(*failed_, false);
}

}  // namespace posix
