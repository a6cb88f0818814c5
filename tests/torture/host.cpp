#include "tests/torture/host.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "backends/occt/import_service.h"
#include "backends/posix/posix.h"
#include "platform/os/services.h"
#include "tests/torture/bases.h"
#include "tests/torture/damage.h"
#include "tests/torture/judge.h"

namespace torture {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// One import under way.
struct Slot {
    std::uint64_t number = 0;
    std::size_t base = 0;
    Damaged input;
    fs::path folder;
    std::string path;
    std::shared_ptr<HPS::Exchange::ImportTask> task;
    Clock::time_point start;
};

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string oneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    std::ranges::replace(text, '\t', ' ');
    return text;
}

class Host {
public:
    explicit Host(const Settings& settings)
        : settings_(settings),
          bases_(makeBases(settings.samplesFolder, settings.dataFolder, std::size_t{100} << 10)),
          kinds_(kindsOf(bases_)) {
        posix::Options machine;
        machine.helperPath = settings.helper;
        machine.keyStoreFile = settings.workFolder + "/keystore.ini";
        machine.helperWallTimeMs = settings.limitMs;
        os::services() = posix::makeServices(machine);
        service_ = occt::ImportService::create({});
    }

    ~Host() {
        service_.reset();
        os::services() = {};
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void run() {
        const std::uint64_t end = settings_.soundFiles
                                      ? std::min<std::uint64_t>(settings_.end, bases_.size())
                                      : settings_.end;
        std::uint64_t next = settings_.first;
        while (next < end || !slots_.empty()) {
            while (next < end && slots_.size() < settings_.atOnce) start(next++);
            bool ended = false;
            for (std::size_t i = slots_.size(); i-- > 0;) {
                float fraction = 0;
                if (slots_[i].task->status(fraction) == HPS::IOResult::InProgress) continue;
                finish(slots_[i]);
                slots_.erase(slots_.begin() + static_cast<long>(i));
                ended = true;
            }
            if (!ended) std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }

private:
    std::size_t baseOf(std::uint64_t number) const {
        if (settings_.soundFiles) return static_cast<std::size_t>(number);
        const std::string& kind = kinds_[number % kinds_.size()];
        std::vector<std::size_t> ofKind;
        for (std::size_t i = 0; i < bases_.size(); ++i) {
            if (bases_[i].kind == kind) ofKind.push_back(i);
        }
        Chance chance(settings_.seed + 0xBA5E, number);
        // The first one is ours and sound; many of the real ones hold nothing to begin with.
        return chance.oneIn(2) ? ofKind.front() : ofKind[chance.below(ofKind.size())];
    }

    void start(std::uint64_t number) {
        Slot slot;
        slot.number = number;
        slot.base = baseOf(number);
        const Base& base = bases_[slot.base];
        slot.input = settings_.soundFiles ? Damaged{base.bytes, "nothing", 0}
                                          : damaged(bases_, slot.base, settings_.seed, number);
        slot.folder = fs::path(settings_.workFolder) / ("case-" + std::to_string(number));
        fs::create_directories(slot.folder);
        slot.path = (slot.folder / (std::to_string(number) + '.' + base.extension)).string();
        std::ofstream(slot.path, std::ios::binary) << slot.input.bytes;
        slot.start = Clock::now();
        slot.task = service_->start(slot.path, {});
        slots_.push_back(std::move(slot));
    }

    Ended endOf(const Slot& slot) const {
        Ended ended;
        ended.seconds = std::chrono::duration<double>(Clock::now() - slot.start).count();
        const auto model = std::dynamic_pointer_cast<const occt::Model>(slot.task->model());
        ended.success = model != nullptr;
        ended.causeCode = slot.task->cause().code;
        ended.causeText = slot.task->cause().text;
        if (model) {
            ended.gaps = model->gaps();
            ended.loaded = loadedFrom(*model);
        }
        return ended;
    }

    std::string leftBeside(const Slot& slot) const {
        for (const auto& entry : fs::directory_iterator(slot.folder)) {
            if (entry.path() != slot.path) return "left beside it: " + entry.path().string();
        }
        return readFile(slot.path) == slot.input.bytes ? "" : "the input was changed";
    }

    void finish(const Slot& slot) {
        const Base& base = bases_[slot.base];
        const Declared declared = declaredIn(base.kind, slot.input.bytes);
        const Ended ended = endOf(slot);
        Verdict verdict =
            judge(slot.path, ended, declared, declared.isUpperBound ? slot.input.touched : 0,
                  settings_.limitMs / 1000.0);
        if (verdict.violation.empty()) verdict.violation = leftBeside(slot);
        std::string what = base.name + ": " + slot.input.what;
        if (settings_.keepAll || settings_.soundFiles) {
            what += " | " + ended.causeText;
            for (const std::string& gap : ended.gaps) what += " | " + gap;
        }
        std::cout << "case\t" << slot.number << '\t' << base.kind << '\t' << nameOf(verdict.outcome)
                  << '\t' << ended.seconds << '\t' << oneLine(verdict.violation) << '\t'
                  << oneLine(what) << std::endl;
        std::error_code ignored;
        if (!settings_.keepFolder.empty() && (settings_.keepAll || !verdict.violation.empty())) {
            fs::create_directories(settings_.keepFolder, ignored);
            fs::copy_file(slot.path,
                          fs::path(settings_.keepFolder) / fs::path(slot.path).filename(),
                          fs::copy_options::overwrite_existing, ignored);
        }
        fs::remove_all(slot.folder, ignored);
    }

    const Settings& settings_;
    const std::vector<Base> bases_;
    const std::vector<std::string> kinds_;
    std::shared_ptr<occt::ImportService> service_;
    std::vector<Slot> slots_;
};

}  // namespace

int runHost(const Settings& settings) {
    Host(settings).run();
    return 0;
}

}  // namespace torture
