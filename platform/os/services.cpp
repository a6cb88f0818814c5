#include "platform/os/services.h"

namespace os {

Services& services() {
    static Services installed;
    return installed;
}

void debugOutput(std::wstring_view text) {
    if (const auto& debug = services().debug) {
        debug->write(text);
    }
}

}  // namespace os
