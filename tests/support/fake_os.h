#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/os/services.h"
#include "tests/support/scripted_host_log.h"

/// The machine as tests see it: no real time, no real store, no real files.
namespace support {

/// Time moves only by sleeping or by hand. Sleeping returns at once.
class FakeClock : public os::Clock {
public:
    explicit FakeClock(Log log) : log_(std::move(log)) {}
    std::uint64_t ticksMs() const override { return now; }
    void sleepMs(std::uint32_t durationMs) override;

    std::uint64_t now = 1000;
    /// Called after each sleep; lets scripted imports move on.
    std::function<void()> onSleep;

private:
    Log log_;
};

/// Keys and values in memory. Values are stored under the names as they are written.
class FakeKeyStore : public os::KeyStore {
public:
    explicit FakeKeyStore(Log log) : log_(std::move(log)) {}
    std::unique_ptr<os::Key> open(const std::wstring& path, os::KeyAccess access) override;
    std::unique_ptr<os::Key> create(const std::wstring& path, os::KeyAccess access) override;

    using Values = std::map<std::wstring, std::uint32_t>;
    std::map<std::wstring, Values> keys;
    bool refuse = false;      ///< every access fails
    bool refuseFull = false;  ///< only full access fails

private:
    std::unique_ptr<os::Key> give(const std::wstring& path, os::KeyAccess access);
    Log log_;
};

class FakeFiles : public os::Files {
public:
    explicit FakeFiles(Log log) : log_(std::move(log)) {}
    bool exists(const std::wstring& path) const override;
    std::wstring executablePath() const override { return executable; }
    std::wstring tempFolder() const override { return L"/tmp/"; }
    wchar_t separator() const override { return L'/'; }
    std::wstring makePrivateFolder(const std::wstring&) override { return {}; }

    std::set<std::wstring> existing;
    std::wstring executable = L"/opt/bextora/bin/viewer";

private:
    Log log_;
};

class FakeDebugOutput : public os::DebugOutput {
public:
    explicit FakeDebugOutput(Log log) : log_(std::move(log)) {}
    void write(std::wstring_view text) override;

private:
    Log log_;
};

/// Libraries as tables of names. Counts how many are loaded and not released.
class FakeModules : public os::Modules {
public:
    explicit FakeModules(Log log) : log_(std::move(log)) {}
    std::unique_ptr<os::Module> load(const std::wstring& name) override;

    std::map<std::wstring, std::map<std::string, void*>> libraries;
    int loaded = 0;

private:
    Log log_;
};

/// Runs a worker's body inside start(): the worker has ended before anybody waits for it.
class SynchronousWorkers : public os::WorkerThreads {
public:
    explicit SynchronousWorkers(Log log) : log_(std::move(log)) {}
    std::unique_ptr<os::WorkerThread> start(std::function<std::uint32_t()> body) override;
    os::RunToken* current() override { return nullptr; }

private:
    Log log_;
};

/// Keeps a worker's body until the test runs it, if ever.
class ManualWorkers : public os::WorkerThreads {
public:
    explicit ManualWorkers(Log log) : log_(std::move(log)) {}
    std::unique_ptr<os::WorkerThread> start(std::function<std::uint32_t()> body) override;
    os::RunToken* current() override { return nullptr; }

    std::function<std::uint32_t()> body;
    bool refuse = false;  ///< no thread can be had

private:
    Log log_;
};

/// Real threads with real tokens: a killed run goes on executing, unseen.
class ThreadedWorkers : public os::WorkerThreads {
public:
    explicit ThreadedWorkers(Log log) : log_(std::move(log)) {}
    std::unique_ptr<os::WorkerThread> start(std::function<std::uint32_t()> body) override;
    os::RunToken* current() override;

private:
    Log log_;
};

std::string narrow(const std::wstring& text);

}  // namespace support
