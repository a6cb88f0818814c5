#include "tests/support/scripted_host_exchange.h"

#include <algorithm>

#include "platform/hps/component_type.h"
#include "platform/hps/exception.h"
#include "tests/support/fake_os.h"

namespace support {
namespace {

using HPS::ComponentId;
namespace type = HPS::ComponentType;

/// 0 the file, 1 the root occurrence, from 2 on the leaves.
class FlatModel : public HPS::ComponentProvider {
public:
    explicit FlatModel(std::vector<std::string> parts) : parts_(std::move(parts)) {}

    ComponentId root() const override { return 0; }
    std::uint32_t type(ComponentId id) const override {
        return id == 0 ? type::ModelFile : type::ProductOccurrence;
    }
    std::string name(ComponentId id) const override {
        if (id == 0) return "file";
        return id == 1 ? "Top" : parts_.at(id - 2);
    }
    std::size_t childCount(ComponentId id) const override {
        if (id == 0) return 1;
        return id == 1 ? parts_.size() : 0;
    }
    ComponentId child(ComponentId id, std::size_t index) const override {
        return id == 0 ? 1 : static_cast<ComponentId>(index + 2);
    }
    std::size_t countAll(ComponentId id, std::uint32_t wanted) const override {
        std::vector<ComponentId> all;
        collectAll(id, wanted, all);
        return all.size();
    }
    void collectAll(ComponentId id, std::uint32_t wanted,
                    std::vector<ComponentId>& out) const override {
        if (type::selects(wanted, type(id))) out.push_back(id);
        for (std::size_t i = 0; i < childCount(id); ++i) collectAll(child(id, i), wanted, out);
    }
    std::vector<ComponentId> owners(ComponentId id) const override {
        if (id == 0) return {};
        return id == 1 ? std::vector<ComponentId>{0} : std::vector<ComponentId>{1, 0};
    }
    std::vector<std::shared_ptr<const HPS::MetadataValue>> metadata(ComponentId) const override {
        return {};
    }
    const void* exchangeEntity(ComponentId) const override { return nullptr; }

private:
    std::vector<std::string> parts_;
};

class FakeTask : public HPS::Exchange::ImportTask {
public:
    FakeTask(std::string path, FakeImporter::Script script, Log log)
        : path_(std::move(path)), script_(std::move(script)), log_(std::move(log)) {}
    ~FakeTask() override { log_->add("import.release " + path_); }

    HPS::IOResult status(float& fraction) override {
        if (script_.throwsOnStatus) throw HPS::Exception("status is not to be had");
        fraction = 0.5F;
        const std::size_t last = script_.states.size() - 1;
        const int state = script_.states[std::min(asked_++, last)];
        log_->add("import.status " + path_ + " " + std::to_string(state));
        return static_cast<HPS::IOResult>(state);
    }
    std::shared_ptr<const HPS::ComponentProvider> model() override {
        log_->add("import.model " + path_);
        if (script_.throwsOnModel) throw HPS::Exception("model is not to be had");
        return script_.model;
    }
    HPS::Exchange::ImportCause cause() const override { return {}; }
    void cancel() override { log_->add("import.cancel " + path_); }

private:
    std::string path_;
    FakeImporter::Script script_;
    Log log_;
    std::size_t asked_ = 0;
};

class FakeComparer : public bxtimp::IDocComparer {
public:
    FakeComparer(std::shared_ptr<ComparerScript> script, Log log)
        : script_(std::move(script)), log_(std::move(log)) {
        ++script_->alive;
        ++script_->made;
    }
    ~FakeComparer() override {
        --script_->alive;
        log_->add("comparer.delete");
    }
    std::wstring doComparision(std::shared_ptr<bxtsg::IFactory> factory,
                               const wchar_t* referencePath, const wchar_t* comparePath,
                               bxt::IStatusManager* statusManager, Status& status) override {
        log_->add("doComparision " + narrow(referencePath) + " " + narrow(comparePath));
        script_->factory = std::move(factory);
        script_->statusManager = statusManager;
        if (script_->body) return script_->body(status);
        status = Done;
        return L"/results/1.xbf";
    }

private:
    std::shared_ptr<ComparerScript> script_;
    Log log_;
};

}  // namespace

std::shared_ptr<const HPS::ComponentProvider> flatModel(const std::vector<std::string>& parts) {
    return std::make_shared<FlatModel>(parts);
}

std::shared_ptr<HPS::Exchange::ImportTask> FakeImporter::start(
    const std::string& path, const HPS::Exchange::ImportOptions& given) {
    log_->add("import.start " + path);
    options.push_back(given);
    if (onStart) onStart();
    return std::make_shared<FakeTask>(path, script ? script(path) : Script(), log_);
}

bxtexchange::Services scriptedExchange(std::shared_ptr<ComparerScript> script, Log log) {
    bxtexchange::Services services;
    services.makeComparer = [script, log](const std::wstring& languageFolder) {
        log->add("comparer.make " + narrow(languageFolder));
        return std::make_unique<FakeComparer>(script, log);
    };
    return services;
}

}  // namespace support
