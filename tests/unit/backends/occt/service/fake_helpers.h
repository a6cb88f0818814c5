#pragma once

#include <atomic>
#include <deque>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "backends/occt/document/binary_document.h"
#include "backends/occt/document/description.h"
#include "backends/occt/import_service.h"
#include "tests/support/fake_os.h"
#include "tests/support/scripted_host_log.h"

namespace service_test {

/// What a test tells a helper process to say and how to end.
struct Script {
    std::mutex mutex;
    std::deque<std::string> lines;
    os::ProcessEnd end = os::ProcessEnd::Running;
    int exitCode = 0;
    std::vector<std::string> arguments;
    std::atomic<bool> killed = false;
    std::atomic<bool> gone = false;  ///< whether the host has let go of the process

    void say(const std::string& line) {
        const std::lock_guard lock(mutex);
        lines.push_back(line);
    }
    void finish(os::ProcessEnd how, int code = 0) {
        const std::lock_guard lock(mutex);
        end = how;
        exitCode = code;
    }
    /// Folder that the host gave the helper.
    std::string folder() const {
        for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
            if (arguments[i] == "--out") return arguments[i + 1];
        }
        return {};
    }
    /// Leaves a document of one empty part, as a helper that has ended well does.
    void leaveDocument() const {
        occt::Description description;
        description.definitions.resize(1);
        description.definitions[0].name = "part";
        const std::string document = folder() + "/" + occt::kDocumentFile;
        std::ofstream(document) << "x";
        description.document = *occt::sealOf(document);
        std::ofstream(folder() + "/" + occt::kDescriptionFile, std::ios::binary)
            << packDescription(description);
    }
};

class ScriptedProcess : public os::ChildProcess {
public:
    explicit ScriptedProcess(std::shared_ptr<Script> script) : script_(std::move(script)) {}
    ~ScriptedProcess() override { script_->gone = true; }
    os::ProcessEnd poll() override {
        const std::lock_guard lock(script_->mutex);
        return script_->killed ? os::ProcessEnd::Killed : script_->end;
    }
    void wait(std::uint32_t) override { std::this_thread::yield(); }
    std::optional<std::string> nextLine() override {
        const std::lock_guard lock(script_->mutex);
        if (script_->lines.empty()) return std::nullopt;
        std::string line = script_->lines.front();
        script_->lines.pop_front();
        return line;
    }
    int exitCode() const override { return script_->exitCode; }
    void kill() override { script_->killed = true; }

private:
    std::shared_ptr<Script> script_;
};

class ScriptedProcesses : public os::ChildProcesses {
public:
    std::unique_ptr<os::ChildProcess> startHelper(const std::vector<std::string>& arguments,
                                                  const os::ProcessLimits&) override {
        auto script = std::make_shared<Script>();
        script->arguments = arguments;
        if (failAtOnce) script->end = os::ProcessEnd::NotStarted;
        started.push_back(script);
        return std::make_unique<ScriptedProcess>(script);
    }

    std::vector<std::shared_ptr<Script>> started;
    bool failAtOnce = false;
};

/// Real folders below a scratch folder of the test.
class ScratchFiles : public support::FakeFiles {
public:
    using FakeFiles::FakeFiles;
    std::wstring makePrivateFolder(const std::wstring& purpose) override {
        if (refuse) return {};
        const auto folder = root / (purpose + std::to_wstring(++count));
        std::filesystem::create_directories(folder);
        return folder.wstring();
    }

    std::filesystem::path root;
    bool refuse = false;
    int count = 0;
};

/// A machine whose helpers do what the test says, and a service on it.
class ScriptedService : public testing::Test {
protected:
    ScriptedService() {
        std::string pattern = testing::TempDir() + "occt_service_XXXXXX";
        scratch = mkdtemp(pattern.data());
        files->root = scratch;
        os::services() = {};
        os::services().processes = processes;
        os::services().files = files;
    }
    ~ScriptedService() override {
        service.reset();
        os::services() = {};
        std::filesystem::remove_all(scratch);
    }

    std::string writeFile(const std::string& name, const std::string& content) const {
        const auto path = scratch / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }
    Script& helper(std::size_t index = 0) { return *processes->started.at(index); }

    support::Log log = std::make_shared<support::CallLog>();
    std::shared_ptr<ScriptedProcesses> processes = std::make_shared<ScriptedProcesses>();
    std::shared_ptr<ScratchFiles> files = std::make_shared<ScratchFiles>(log);
    std::filesystem::path scratch;
    std::vector<std::string> logged;
    std::vector<std::pair<double, std::string>> progress;
    occt::ImportObserver observer{
        [this](const std::string&, double fraction, const std::string& phase) {
            progress.emplace_back(fraction, phase);
        },
        [this](const std::string& text) { logged.push_back(text); }};
    std::shared_ptr<occt::ImportService> service = occt::ImportService::create(observer);
};

}  // namespace service_test
