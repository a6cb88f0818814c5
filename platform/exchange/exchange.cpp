#include <stdexcept>

#include "platform/exchange/doc_comparer.h"
#include "platform/exchange/geometry_result.h"
#include "platform/exchange/pmi.h"
#include "platform/exchange/services.h"

bxtimp::IDocComparer::~IDocComparer() = default;
bxtsg::SCGeometryResult::~SCGeometryResult() = default;

namespace bxtexchange {

Services& services() {
    static Services installed;
    return installed;
}

HOOPSDOCComparer::HOOPSDOCComparer(const std::wstring& languageFolder) {
    if (const auto& make = services().makeComparer) implementation_ = make(languageFolder);
}

HOOPSDOCComparer::~HOOPSDOCComparer() = default;

std::wstring HOOPSDOCComparer::doComparision(std::shared_ptr<bxtsg::IFactory> factory,
                                             const wchar_t* referencePath,
                                             const wchar_t* comparePath,
                                             bxt::IStatusManager* statusManager, Status& status) {
    if (!implementation_) throw std::runtime_error("no comparer is installed");
    return implementation_->doComparision(std::move(factory), referencePath, comparePath,
                                          statusManager, status);
}

bool PMIInfoPopulator::isMultiBody(const HPS::Exchange::Component& component) {
    const auto& question = services().isMultiBody;
    return question && !component.Empty() && question(component);
}

bool PMIInfoPopulator::getPMIInfo(const HPS::Exchange::Component& component, PMIInfos& infos) {
    const auto& question = services().getPMIInfo;
    return question && !component.Empty() && question(component, infos);
}

}  // namespace bxtexchange
