#include "apps/cli/host_services.h"

#include <cstdlib>

#include "apps/cli/interruptible_clock.h"
#include "apps/cli/switches.h"
#include "backends/comparer/comparer.h"
#include "backends/occt/file_formats.h"
#include "backends/occt/import_service.h"
#include "backends/posix/posix.h"
#include "platform/bxt/file_path.h"
#include "platform/bxt/services.h"
#include "platform/exchange/services.h"
#include "platform/hps/services.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"
#include "platform/ui/services.h"

namespace cli {
namespace {

constexpr const wchar_t* kMainCaption = L"Bextora";
constexpr const wchar_t* kPluginLibrary = L"libcompareplugin.so";

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

wchar_t lower(char c) {
    return static_cast<wchar_t>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

}  // namespace

HostServices::HostServices(const Options& options, RunLog& log) {
    posix::Options machine;
    machine.helperMemoryBytes = options.memoryLimitBytes;
    machine.helperWallTimeMs = options.timeLimitMs;
    os::services() = posix::makeServices(machine);
    if (!options.switches.empty()) {
        os::services().keyStore =
            std::make_shared<SwitchOverlay>(os::services().keyStore, options.switches);
    }

    occt::ImportObserver observer;
    observer.log = [&log](const std::string& text) { log.add(text); };
    observer.progress = [&log](const std::string& path, double fraction, const std::string& phase) {
        log.importing(path, fraction, phase);
    };
    imports_ = occt::ImportService::create(observer);
    HPS::services().importer = imports_;
    comparer::Options comparison;
    comparison.observer.log = observer.log;
    comparison.observer.progress = [&log](double fraction, const std::string& phase) {
        log.comparing(fraction, phase);
    };
    if (options.lengthToleranceMm > 0.0) comparison.lengthToleranceMm = options.lengthToleranceMm;
    if (options.angleToleranceDeg > 0.0) comparison.angleToleranceDeg = options.angleToleranceDeg;
    bxtexchange::services() = comparer::makeServices(imports_, comparison);
    bxt::services().language = userLanguage();
    os::services().clock = std::make_shared<InterruptibleClock>(
        os::services().clock, [imports = imports_] { imports->cancelAll(); });
}

HostServices::~HostServices() {
    ui::services() = {};
    bxt::services().strings = nullptr;
    bxtexchange::services() = {};
    HPS::services() = {};
    imports_.reset();
    os::services() = {};
}

void HostServices::installDesktop(std::shared_ptr<headless::User> user) {
    toolkit_ = std::make_shared<headless::Toolkit>(user, kMainCaption);
    ui::services().toolkit = toolkit_;
    ui::services().clipboard = clipboard_;
    ui::services().fileChooser = std::make_shared<headless::FileChooser>(std::move(user));
    ui::services().screen = std::make_shared<headless::Screen>();
}

std::string pluginPath() {
    return os::toUtf8(bxt::FileUtils::getProcessPath() + kPluginLibrary);
}

std::vector<std::wstring> fileFormats() {
    std::vector<std::wstring> list;
    std::wstring all;
    for (const occt::FileFormat& format : occt::fileFormats()) {
        const std::wstring patterns = os::toWide(format.patterns);
        list.push_back(os::toWide(format.listName));
        list.push_back(patterns);
        all += (all.empty() ? L"" : L";") + patterns;
    }
    list.push_back(L"All Supported Files");
    list.push_back(all);
    return list;
}

std::wstring userLanguage() {
    for (const char* name : {"BEXTORA_LANG", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (!value || !*value) continue;
        const bool twoLetters = isLetter(value[0]) && isLetter(value[1]) && !isLetter(value[2]);
        return twoLetters ? std::wstring{lower(value[0]), lower(value[1])} : L"en";
    }
    return L"en";
}

}  // namespace cli
