#include "backends/posix/modules.h"

#include <dlfcn.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "backends/posix/files.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace posix {
namespace {

class LoadedModule final : public os::Module {
public:
    explicit LoadedModule(void* handle) : handle_(handle) {}
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    ~LoadedModule() override { ::dlclose(handle_); }

    void* symbol(const char* name) const override { return ::dlsym(handle_, name); }

private:
    void* const handle_;
};

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string platformLibraryFolder() {
    Dl_info info{};
    const auto address = reinterpret_cast<const void*>(&os::services);
    if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
    return folderOf(info.dli_fname);
}

std::vector<std::string> candidates(const std::string& name) {
    if (name.find('/') != std::string::npos) return {name};
    std::vector<std::string> paths;
    const std::string beside = folderOf(executablePathBytes());
    for (const std::string& folder : {beside, beside + "../lib/", platformLibraryFolder()}) {
        const std::string path = folder + name;
        if (!folder.empty() && ::access(path.c_str(), F_OK) == 0) paths.push_back(path);
    }
    paths.push_back(name);
    return paths;
}

}  // namespace

std::unique_ptr<os::Module> PosixModules::load(const std::wstring& name) {
    const std::string bytes = os::toUtf8(name);
    // The loader takes an empty name for the running program.
    if (bytes.empty() || bytes.find('\0') != std::string::npos) return nullptr;
    for (const std::string& path : candidates(bytes)) {
        if (void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
            return std::make_unique<LoadedModule>(handle);
        }
        const char* const reason = ::dlerror();
        os::debugOutput(os::toWide(std::string(reason == nullptr ? path : reason) + '\n'));
    }
    return nullptr;
}

}  // namespace posix
