#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/exchange/services.h"
#include "platform/hps/services.h"
#include "tests/support/scripted_host_log.h"

/// Importer and comparer that do what the test tells them.
namespace support {

/// A model file whose root occurrence holds leaf parts of the given names.
std::shared_ptr<const HPS::ComponentProvider> flatModel(const std::vector<std::string>& parts);

/// Imports whose states come from a list, one per question; the last one stays.
class FakeImporter : public HPS::Importer {
public:
    explicit FakeImporter(Log log) : log_(std::move(log)) {}
    std::shared_ptr<HPS::Exchange::ImportTask> start(
        const std::string& path, const HPS::Exchange::ImportOptions& options) override;

    struct Script {
        std::vector<int> states = {0};
        std::shared_ptr<const HPS::ComponentProvider> model = flatModel({"Part"});
        bool throwsOnStatus = false;
        bool throwsOnModel = false;
    };
    /// Script by UTF-8 path; a path without one succeeds at once.
    std::function<Script(const std::string& path)> script;
    std::function<void()> onStart;  ///< may throw
    std::vector<HPS::Exchange::ImportOptions> options;

private:
    Log log_;
};

/// What comparers of a test have in common; each HOOPSDOCComparer gets one of its own.
struct ComparerScript {
    using Body = std::function<std::wstring(bxtimp::IDocComparer::Status& status)>;
    /// By default: status 0 and the path "/results/1.xbf".
    Body body;
    std::shared_ptr<bxtsg::IFactory> factory;
    bxt::IStatusManager* statusManager = nullptr;
    int alive = 0;
    int made = 0;
};

/// Services of the exchange folder with comparers that follow `script`.
bxtexchange::Services scriptedExchange(std::shared_ptr<ComparerScript> script, Log log);

}  // namespace support
