#pragma once

#include <functional>
#include <string>

#include "platform/exchange/services.h"
#include "tests/support/memory_model.h"

namespace support {

/// A PMI component whose text ScopedPmi's own answer gives back.
inline ComponentShape pmi(std::string name, std::string text,
                          std::uint32_t type = HPS::ComponentType::PmiDimension) {
    return item(type, std::move(name)).with("text", std::move(text));
}

/// Installs an answer for PMIInfoPopulator::getPMIInfo() and takes it back at the end.
class ScopedPmi {
public:
    using Question = bool (*)(const HPS::Exchange::Component&, bxtexchange::PMIInfos&);

    explicit ScopedPmi(Question question = &textOfMetadata)
        : saved_(bxtexchange::services().getPMIInfo) {
        bxtexchange::services().getPMIInfo = question;
    }
    ~ScopedPmi() { bxtexchange::services().getPMIInfo = saved_; }
    ScopedPmi(const ScopedPmi&) = delete;
    ScopedPmi& operator=(const ScopedPmi&) = delete;

private:
    static bool textOfMetadata(const HPS::Exchange::Component& component,
                               bxtexchange::PMIInfos& infos) {
        const HPS::StringMetadata text(component.GetMetadata("text"));
        if (text.Empty()) return false;
        infos.text = text.GetValue().ToWide();
        return true;
    }

    std::function<bool(const HPS::Exchange::Component&, bxtexchange::PMIInfos&)> saved_;
};

}  // namespace support
