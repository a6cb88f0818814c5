#include "apps/cli/plugin_module.h"

#include <dlfcn.h>
#include <unistd.h>

#include "apps/cli/text.h"

namespace cli {
namespace {

constexpr const char* kInterfaceVersion = "BXT_1";

std::string reasonOfLoader() {
    const char* reason = dlerror();
    return reason ? printable(std::string_view(reason)) : std::string("unknown reason");
}

}  // namespace

std::unique_ptr<PluginModule> PluginModule::load(const std::string& path, std::string& error) {
    const std::string shown = printable(std::string_view(path));
    if (::access(path.c_str(), F_OK) != 0) {
        error = "the compare plug-in is missing: " + shown;
        return nullptr;
    }
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        error = "the compare plug-in can't be loaded: " + reasonOfLoader();
        return nullptr;
    }
    const auto create =
        reinterpret_cast<CreatePluginFunction>(dlvsym(library, "createPlugin", kInterfaceVersion));
    const auto destroy = reinterpret_cast<DestroyPluginFunction>(
        dlvsym(library, "destroyPlugin", kInterfaceVersion));
    if (!create || !destroy) {
        error = shown + " is no plug-in of interface version " + kInterfaceVersion;
        return nullptr;
    }
    bxtui::IGUIPlugin* plugin = nullptr;
    if (create(&plugin) != 0 || !plugin) {
        error = "the compare plug-in could not be created: " + shown;
        return nullptr;
    }
    return std::unique_ptr<PluginModule>(new PluginModule(plugin, destroy));
}

PluginModule::~PluginModule() {
    destroy_(&plugin_);
}

}  // namespace cli
