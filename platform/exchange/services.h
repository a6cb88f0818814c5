#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/bxt/schema.h"
#include "platform/exchange/doc_comparer.h"
#include "platform/exchange/pmi.h"
#include "platform/hps/component.h"

namespace bxtexchange {

/// What the application puts behind this folder's static calls.
struct Services {
    /// Makes a comparer for a language folder. Never gives null.
    std::function<std::unique_ptr<bxtimp::IDocComparer>(const std::wstring&)> makeComparer;
    /// See PMIInfoPopulator::isMultiBody.
    std::function<bool(const HPS::Exchange::Component&)> isMultiBody;
    /// See PMIInfoPopulator::getPMIInfo; never asked about an empty component.
    std::function<bool(const HPS::Exchange::Component&, PMIInfos&)> getPMIInfo;
    /// Reads the numbers that a comparer left in its result file, for the host that opens it.
    /// Empty when the file is no result file.
    std::function<std::shared_ptr<bxtsg::Schema>(const std::wstring& path)> readResult;
    /// Writes a result file's scene in the form that the extension of `target` names (".xbf",
    /// ".glb"). Returns an empty text, or the sentence that says why it failed.
    std::function<std::wstring(const std::wstring& result, const std::wstring& target)> keepResult;
};

Services& services();

}  // namespace bxtexchange
