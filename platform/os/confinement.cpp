#include "platform/os/confinement.h"

#include "platform/os/helper_messages.h"

namespace os {

void confineHelper(Confinement* confinement, const Reach& reach, ParentChannel& channel) {
    if (confinement == nullptr) return;
    for (const std::string& lack : confinement->confine(reach)) {
        channel.send(formatHelperMessage({HelperMessage::Kind::Warning, 0.0, {}, lack}));
    }
}

}  // namespace os
