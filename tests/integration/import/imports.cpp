#include "tests/integration/import/imports.h"

#include <algorithm>

#include "backends/posix/posix.h"
#include "platform/hps/component.h"
#include "platform/hps/exception.h"
#include "platform/hps/services.h"

namespace import_test {
namespace {

constexpr std::uint32_t kPollMs = 2;

std::string shown(const HPS::MetadataValue& value) {
    std::string text = value.name + "=";
    if (const auto* held = std::get_if<std::string>(&value.value)) return text + *held;
    if (const auto* held = std::get_if<double>(&value.value)) return text + std::to_string(*held);
    if (const auto* held = std::get_if<std::int32_t>(&value.value))
        return text + std::to_string(*held);
    if (const auto* held = std::get_if<bool>(&value.value)) return text + (*held ? "yes" : "no");
    return text + "?";
}

}  // namespace

Imports::Imports() {
    posix::Options options;
    options.keyStoreFile = (scratch.path() / "keystore.ini").string();
    os::services() = posix::makeServices(options);
    occt::ImportObserver observer;
    observer.progress = [this](const std::string&, double fraction, const std::string& phase) {
        progress.emplace_back(fraction, phase);
    };
    observer.log = [this](const std::string& text) { logged.push_back(text); };
    service = occt::ImportService::create(observer);
    HPS::services().importer = service;
}

Imports::~Imports() {
    HPS::services() = {};
    service.reset();
    os::services() = {};
}

HPS::Exchange::ImportNotifier Imports::start(const std::string& path,
                                             const HPS::Exchange::ImportOptionsKit& options) {
    return HPS::Exchange::File::Import(path.c_str(), options);
}

Imported Imports::finish(const HPS::Exchange::ImportNotifier& notifier) {
    Imported out;
    float fraction = 0.0F;
    while ((out.result = notifier.Status(fraction)) == HPS::IOResult::InProgress) {
        os::services().clock->sleepMs(kPollMs);
    }
    out.cause = notifier.GetCause();
    out.component = notifier.GetCADModel();
    out.model = std::dynamic_pointer_cast<const occt::Model>(out.component.Provider());
    return out;
}

Imported Imports::import(const std::string& path, const HPS::Exchange::ImportOptionsKit& options) {
    return finish(start(path, options));
}

Imported Imports::importText(const std::string& text,
                             const HPS::Exchange::ImportOptionsKit& options) {
    Imported out =
        import(scratch.write("file" + std::to_string(++files_) + ".step", text), options);
    EXPECT_EQ(out.result, HPS::IOResult::Success) << out.cause.text;
    if (!out.model) throw HPS::Exception("the test's own file can't be read");
    return out;
}

std::size_t count(const Imported& imported, std::uint32_t type) {
    return imported.component.GetAllSubcomponents(type).size();
}

std::vector<std::string> names(const Imported& imported, std::uint32_t type) {
    std::vector<std::string> out;
    for (const HPS::Component& next : imported.component.GetAllSubcomponents(type)) {
        out.push_back(imported.model->name(next.Id()));
    }
    return out;
}

HPS::Component find(const Imported& imported, std::uint32_t type, const std::string& name) {
    for (const HPS::Component& next : imported.component.GetAllSubcomponents(type)) {
        if (imported.model->name(next.Id()) == name) return next;
    }
    ADD_FAILURE() << "no component named " << name;
    return imported.component;
}

std::vector<std::string> metadata(const HPS::Component& component) {
    std::vector<std::string> out;
    for (const auto& value : component.Provider()->metadata(component.Id())) {
        out.push_back(shown(*value));
    }
    std::sort(out.begin(), out.end());
    return out;
}

}  // namespace import_test
