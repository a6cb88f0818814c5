#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/hps/component.h"
#include "platform/hps/component_type.h"

namespace support {

/// One component of a small model, written down as a nested expression.
struct ComponentShape {
    std::uint32_t type = HPS::ComponentType::ProductOccurrence;
    std::string name;
    std::vector<ComponentShape> children;
    std::vector<HPS::MetadataValue> metadata;

    /// The same component with one more metadata object.
    ComponentShape with(std::string key, decltype(HPS::MetadataValue::value) value) const;
};

/// A product occurrence with what is below it.
ComponentShape occurrence(std::string name, std::vector<ComponentShape> children = {});
/// An occurrence with a part definition and one B-rep item per body name.
ComponentShape part(std::string name, std::vector<std::string> bodies = {"Solid"});
ComponentShape item(std::uint32_t type, std::string name,
                    std::vector<ComponentShape> children = {});

/// An imported model in memory: flat arrays, built in any order of parents, constant time for
/// every question that the contract wants constant. Millions of components are fine.
class MemoryModel : public HPS::ComponentProvider {
public:
    /// Adds components one by one; a parent comes before its children.
    class Builder {
    public:
        Builder() : Builder(std::make_unique<MemoryModel>()) {}
        /// Fills a model of a class of the test's own.
        explicit Builder(std::unique_ptr<MemoryModel> model);
        /// The model file itself.
        static constexpr HPS::ComponentId kRoot = 0;
        HPS::ComponentId add(HPS::ComponentId parent, std::uint32_t type, std::string name);
        HPS::ComponentId addOccurrence(HPS::ComponentId parent, std::string name) {
            return add(parent, HPS::ComponentType::ProductOccurrence, std::move(name));
        }
        void addMetadata(HPS::ComponentId component, HPS::MetadataValue value);
        void addShape(HPS::ComponentId parent, const ComponentShape& shape);
        /// The finished model; the builder is empty afterwards.
        std::shared_ptr<const MemoryModel> finish();

    private:
        std::unique_ptr<MemoryModel> model_;
    };

    HPS::ComponentId root() const override { return Builder::kRoot; }
    std::uint32_t type(HPS::ComponentId id) const override { return types_[id]; }
    std::string name(HPS::ComponentId id) const override;
    std::size_t childCount(HPS::ComponentId id) const override;
    HPS::ComponentId child(HPS::ComponentId id, std::size_t index) const override;
    std::size_t countAll(HPS::ComponentId id, std::uint32_t type) const override;
    void collectAll(HPS::ComponentId id, std::uint32_t type,
                    std::vector<HPS::ComponentId>& out) const override;
    std::vector<HPS::ComponentId> owners(HPS::ComponentId id) const override;
    std::vector<std::shared_ptr<const HPS::MetadataValue>> metadata(
        HPS::ComponentId id) const override;
    const void* exchangeEntity(HPS::ComponentId id) const override;

    std::size_t componentCount() const { return types_.size(); }

private:
    void finish();

    std::vector<std::uint32_t> types_;
    std::vector<HPS::ComponentId> parents_;
    std::string names_;                    // of all components, one after the other
    std::vector<std::size_t> nameStarts_;  // and the end of the last one
    std::vector<std::uint32_t> childStarts_;
    std::vector<HPS::ComponentId> children_;
    std::vector<std::uint32_t> occurrencesBelow_;  // and at the component
    std::vector<std::uint32_t> itemsBelow_;
    std::map<HPS::ComponentId, std::vector<std::shared_ptr<const HPS::MetadataValue>>> metadata_;
};

/// A model with these components directly below the model file.
HPS::CADModel makeModel(const std::vector<ComponentShape>& top);

/// The answer that fits MemoryModel: whether the component is one of several representation
/// items with the same component above them.
bool isOneOfSeveralItems(const HPS::Exchange::Component& component);

/// Installs an answer for PMIInfoPopulator::isMultiBody() and takes it back at the end.
class ScopedMultiBody {
public:
    explicit ScopedMultiBody(
        bool (*question)(const HPS::Exchange::Component&) = &isOneOfSeveralItems);
    ~ScopedMultiBody();
    ScopedMultiBody(const ScopedMultiBody&) = delete;
    ScopedMultiBody& operator=(const ScopedMultiBody&) = delete;

private:
    struct Saved;
    std::unique_ptr<Saved> saved_;
};

}  // namespace support
