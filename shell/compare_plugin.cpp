#include "shell/compare_plugin.h"

#include <utility>

#include "extract/import_library.h"
#include "platform/bxt/resource_loader.h"
#include "resources/string_table.h"

namespace shell {
namespace {

constexpr const wchar_t* kId = L"{344DCF82-A071-4A52-8704-4692167341F2}";
constexpr const wchar_t* kName = L"Compare Plugin";
constexpr int kType = 2;
constexpr const char* kVersion = "6.7.0.365";
constexpr const wchar_t* kReleaseDate = L"Jul 13 2026";

}  // namespace

ComparePlugin::ComparePlugin() : IGUIPlugin(kId), workflow_(kName) {
    addReleaseDate(kReleaseDate);
    addVersion(bxtsgutils::StringUtils::convert(kVersion));
    // The plug-in stays loaded without the library.
    extract::importLibrary().Bind();
}

ComparePlugin::~ComparePlugin() {
    workflow_.Shutdown();
}

std::wstring ComparePlugin::name() const {
    return kName;
}

int ComparePlugin::pluginType() const {
    return kType;
}

std::shared_ptr<void> ComparePlugin::extensionFor(std::shared_ptr<void>) {
    return nullptr;
}

void ComparePlugin::attachExtension(std::shared_ptr<void>, std::shared_ptr<void>) {}

void ComparePlugin::reservedHook() {}

void ComparePlugin::createRibbonItems(bxtui::RibbonBarHandle,
                                      std::shared_ptr<bxtui::IResourceManager>) {}

void ComparePlugin::releaseRibbonItems(bxtui::RibbonBarHandle,
                                       std::shared_ptr<bxtui::IResourceManager>) {}

void ComparePlugin::addSettingsPages(bxtui::PropertySheetHandle, std::shared_ptr<bxtsg::IFactory>) {
}

void ComparePlugin::onCommand(bxtui::WindowHandle window, std::uint32_t commandId,
                              std::shared_ptr<bxt::IApplication> application) {
    workflow_.onCommand(window, commandId, application);
}

void ComparePlugin::commandState(bxtui::WindowHandle, std::uint32_t, bxtui::CommandState& state) {
    if (workflow_.state().activeIs2D) {
        state = {};
    } else {
        state.enabled = 1;
    }
}

void ComparePlugin::englishCommandName(std::uint32_t stringId, std::wstring& out) {
    out = resources::englishText(stringId);
}

void ComparePlugin::attachApplication(std::shared_ptr<bxt::IApplication>) {}

bool ComparePlugin::isAvailable() const {
    return true;
}

void ComparePlugin::update(const bxtui::Hint* hint) {
    workflow_.update(hint);
}

}  // namespace shell
