#include "tests/support/fake_os.h"

#include <mutex>
#include <thread>

#include "platform/os/utf8.h"

namespace support {
namespace {

const char* accessName(os::KeyAccess access) {
    switch (access) {
        case os::KeyAccess::Read: return "read";
        case os::KeyAccess::Write: return "write";
        case os::KeyAccess::Full: return "full";
    }
    return "?";
}

class FakeKey : public os::Key {
public:
    FakeKey(FakeKeyStore& store, std::wstring path, Log log)
        : store_(store), path_(std::move(path)), log_(std::move(log)) {}
    ~FakeKey() override { log_->add("key.close"); }

    std::optional<std::uint32_t> readNumber(const std::wstring& name) const override {
        log_->add("key.read " + narrow(name));
        const auto& values = store_.keys[path_];
        const auto found = values.find(name);
        if (found == values.end()) return std::nullopt;
        return found->second;
    }
    std::optional<std::wstring> readText(const std::wstring&) const override {
        return std::nullopt;
    }
    bool writeNumber(const std::wstring& name, std::uint32_t value) override {
        log_->add("key.write " + narrow(name) + " " + std::to_string(value));
        store_.keys[path_][name] = value;
        return true;
    }
    bool writeText(const std::wstring&, const std::wstring&) override { return false; }

private:
    FakeKeyStore& store_;
    std::wstring path_;
    Log log_;
};

class FakeModule : public os::Module {
public:
    FakeModule(FakeModules& owner, std::map<std::string, void*> symbols, Log log)
        : owner_(owner), symbols_(std::move(symbols)), log_(std::move(log)) {
        ++owner_.loaded;
    }
    ~FakeModule() override {
        --owner_.loaded;
        log_->add("module.free");
    }
    void* symbol(const char* name) const override {
        log_->add(std::string("module.symbol ") + name);
        const auto found = symbols_.find(name);
        return found == symbols_.end() ? nullptr : found->second;
    }

private:
    FakeModules& owner_;
    std::map<std::string, void*> symbols_;
    Log log_;
};

class EndedWorker : public os::WorkerThread {
public:
    explicit EndedWorker(Log log) : log_(std::move(log)) {}
    void terminate(std::uint32_t exitCode) override {
        log_->add("worker.terminate " + std::to_string(exitCode));
    }
    void close() override { log_->add("worker.close"); }

private:
    Log log_;
};

class Token : public os::RunToken {
public:
    bool valid() const override {
        const std::lock_guard lock(mutex_);
        return valid_;
    }
    bool publish(const std::function<void()>& effect) override {
        const std::lock_guard lock(mutex_);
        if (valid_) effect();
        return valid_;
    }
    std::shared_ptr<void> onKill(std::function<void()> kill) override {
        const std::lock_guard lock(mutex_);
        if (!valid_) {
            kill();
            return nullptr;
        }
        auto registration = std::make_shared<std::function<void()>>(std::move(kill));
        kills_.push_back(registration);
        return registration;
    }
    void invalidate() {
        std::vector<std::weak_ptr<std::function<void()>>> kills;
        {
            const std::lock_guard lock(mutex_);
            if (!valid_) return;
            valid_ = false;
            kills.swap(kills_);
        }
        for (const auto& weak : kills) {
            if (const auto kill = weak.lock()) (*kill)();
        }
    }

private:
    mutable std::mutex mutex_;
    bool valid_ = true;
    std::vector<std::weak_ptr<std::function<void()>>> kills_;
};

thread_local Token* currentToken = nullptr;

class ThreadedWorker : public os::WorkerThread {
public:
    ThreadedWorker(std::function<std::uint32_t()> body, Log log)
        : log_(std::move(log)), token_(std::make_shared<Token>()) {
        thread_ = std::thread([token = token_, run = std::move(body)] {
            currentToken = token.get();
            run();
        });
    }
    ~ThreadedWorker() override { join(); }
    void terminate(std::uint32_t exitCode) override {
        log_->add("worker.terminate " + std::to_string(exitCode));
        token_->invalidate();
        join();
    }
    void close() override {
        join();
        log_->add("worker.close");
    }

private:
    void join() {
        if (thread_.joinable()) thread_.join();
    }
    Log log_;
    std::shared_ptr<Token> token_;
    std::thread thread_;
};

}  // namespace

std::string narrow(const std::wstring& text) {
    return os::toUtf8(text);
}

void FakeClock::sleepMs(std::uint32_t durationMs) {
    log_->add("sleep " + std::to_string(durationMs));
    now += durationMs;
    if (onSleep) onSleep();
}

std::unique_ptr<os::Key> FakeKeyStore::open(const std::wstring& path, os::KeyAccess access) {
    log_->add("store.open " + narrow(path) + " " + accessName(access));
    return keys.count(path) ? give(path, access) : nullptr;
}

std::unique_ptr<os::Key> FakeKeyStore::create(const std::wstring& path, os::KeyAccess access) {
    log_->add("store.create " + narrow(path) + " " + accessName(access));
    auto key = give(path, access);
    if (key) keys[path];
    return key;
}

std::unique_ptr<os::Key> FakeKeyStore::give(const std::wstring& path, os::KeyAccess access) {
    if (refuse || (refuseFull && access == os::KeyAccess::Full)) return nullptr;
    return std::make_unique<FakeKey>(*this, path, log_);
}

bool FakeFiles::exists(const std::wstring& path) const {
    log_->add("files.exists " + narrow(path));
    return existing.count(path) > 0;
}

void FakeDebugOutput::write(std::wstring_view text) {
    log_->add("debug " + os::toUtf8(text));
}

std::unique_ptr<os::Module> FakeModules::load(const std::wstring& name) {
    log_->add("modules.load " + narrow(name));
    const auto found = libraries.find(name);
    if (found == libraries.end()) return nullptr;
    return std::make_unique<FakeModule>(*this, found->second, log_);
}

std::unique_ptr<os::WorkerThread> SynchronousWorkers::start(std::function<std::uint32_t()> body) {
    log_->add("worker.start");
    body();
    return std::make_unique<EndedWorker>(log_);
}

std::unique_ptr<os::WorkerThread> ManualWorkers::start(std::function<std::uint32_t()> start) {
    log_->add("worker.start");
    if (refuse) return nullptr;
    body = std::move(start);
    return std::make_unique<EndedWorker>(log_);
}

std::unique_ptr<os::WorkerThread> ThreadedWorkers::start(std::function<std::uint32_t()> body) {
    log_->add("worker.start");
    return std::make_unique<ThreadedWorker>(std::move(body), log_);
}

os::RunToken* ThreadedWorkers::current() {
    return currentToken;
}

}  // namespace support
