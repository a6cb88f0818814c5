#include "resources/string_table.h"
#include "shell/compare_plugin.h"

/// The plug-in's entry points; see platform/bxt/plugin.h for how a host finds them.
extern "C" {

/// Makes a plug-in and stores it at `out`. Returns 0.
__attribute__((visibility("default"))) int createPlugin(bxtui::IGUIPlugin** out) {
    if (!out) return 0;
    resources::install();
    *out = new shell::ComparePlugin();
    return 0;
}

/// Deletes the plug-in at `out`, if there is one, and stores null there. Returns 0.
__attribute__((visibility("default"))) int destroyPlugin(bxtui::IGUIPlugin** out) {
    if (!out || !*out) return 0;
    delete *out;
    *out = nullptr;
    resources::uninstall();
    return 0;
}
}
