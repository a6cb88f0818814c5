#pragma once

#include <map>
#include <string>
#include <vector>

#include "backends/occt/body_identity.h"
#include "backends/occt/content_digest.h"
#include "backends/occt/model.h"
#include "platform/hps/component_type.h"

/// A model in memory, built occurrence by occurrence.
class FakeModel : public occt::Model {
public:
    using Id = HPS::ComponentId;

    explicit FakeModel(const std::string& rootName = "Root") {
        add(0, HPS::ComponentType::ModelFile, "file", gp_Trsf());
        rootOccurrence_ = add(0, HPS::ComponentType::ProductOccurrence, rootName, gp_Trsf());
    }

    Id top() const { return rootOccurrence_; }

    /// Occurrence below another one; `placement` relative to it.
    Id occurrence(Id parent, const std::string& name, const gp_Trsf& placement = gp_Trsf()) {
        return add(parent, HPS::ComponentType::ProductOccurrence, name,
                   nodes_[parent].placement * placement);
    }

    /// Makes an occurrence a leaf with one body. Shapes that are the same object share one
    /// definition, as instances of one part do.
    Id body(Id occurrence, const TopoDS_Shape& shape, const std::string& name = "") {
        return bodies(occurrence, {{name, shape}});
    }

    Id bodies(Id occurrence, const std::vector<std::pair<std::string, TopoDS_Shape>>& list) {
        const Id part = add(occurrence, HPS::ComponentType::PartDefinition, nodes_[occurrence].name,
                            nodes_[occurrence].placement);
        const void* const key = list.empty() ? nullptr : list.front().second.TShape().get();
        const auto fresh = definitions_.size();
        nodes_[part].definition = definitions_.try_emplace(key, fresh).first->second;
        for (const auto& [name, shape] : list) {
            const Id item = add(part, HPS::ComponentType::BrepModel, name, nodes_[part].placement);
            nodes_[item].shape = shape;
            nodes_[item].definition = nodes_[part].definition;
        }
        return part;
    }

    Id part(Id parent, const std::string& name, const TopoDS_Shape& shape,
            const gp_Trsf& placement = gp_Trsf()) {
        const Id leaf = occurrence(parent, name, placement);
        body(leaf, shape);
        return leaf;
    }

    /// From now on no digests, as for two files that describe equal bodies by other numbers.
    void hideDigests() { digests_ = false; }
    /// From now on no identities, as for bodies that nobody can measure.
    void hideIdentities() { identities_ = false; }
    void setGaps(std::vector<std::string> gaps) { gaps_ = std::move(gaps); }

    Id root() const override { return 0; }
    std::uint32_t type(Id id) const override { return nodes_[id].type; }
    std::string name(Id id) const override { return nodes_[id].name; }
    std::size_t childCount(Id id) const override { return nodes_[id].children.size(); }
    Id child(Id id, std::size_t index) const override { return nodes_[id].children[index]; }
    std::size_t countAll(Id id, std::uint32_t type) const override {
        std::vector<Id> found;
        collectAll(id, type, found);
        return found.size();
    }
    void collectAll(Id id, std::uint32_t type, std::vector<Id>& out) const override {
        if (HPS::ComponentType::selects(type, nodes_[id].type)) out.push_back(id);
        for (const Id child : nodes_[id].children) collectAll(child, type, out);
    }
    std::vector<Id> owners(Id id) const override {
        std::vector<Id> above;
        while (id != 0) above.push_back(id = nodes_[id].parent);
        return above;
    }
    std::vector<std::shared_ptr<const HPS::MetadataValue>> metadata(Id) const override {
        return {};
    }
    const void* exchangeEntity(Id) const override { return nullptr; }

    gp_Trsf placement(Id id) const override { return nodes_[id].placement; }
    TopoDS_Shape shape(Id item) const override { return nodes_[item].shape; }
    std::size_t definition(Id id) const override { return nodes_[id].definition; }
    std::size_t definitionCount() const override { return definitions_.size(); }
    const bxtexchange::BodyIdentity* identity(Id item) const override {
        if (!identities_) return nullptr;
        const auto known = known_.try_emplace(item);
        if (known.second) known.first->second = occt::bodyIdentity(nodes_[item].shape);
        return known.first->second ? &*known.first->second : nullptr;
    }
    std::string contentDigest(Id item) const override {
        return digests_ ? occt::contentDigest(nodes_[item].shape) : std::string();
    }
    double unitMm() const override { return 1.0; }
    std::vector<std::string> gaps() const override { return gaps_; }

private:
    struct Node {
        Id parent = 0;
        std::uint32_t type = 0;
        std::string name;
        gp_Trsf placement;
        TopoDS_Shape shape;
        std::size_t definition = 0;
        std::vector<Id> children;
    };

    Id add(Id parent, std::uint32_t type, const std::string& name, const gp_Trsf& placement) {
        const Id id = static_cast<Id>(nodes_.size());
        nodes_.push_back({parent, type, name, placement, {}, 0, {}});
        if (id != 0) nodes_[parent].children.push_back(id);
        return id;
    }

    std::vector<Node> nodes_;
    Id rootOccurrence_ = 0;
    std::map<const void*, std::size_t> definitions_;
    mutable std::map<Id, std::optional<bxtexchange::BodyIdentity>> known_;
    bool digests_ = true;
    bool identities_ = true;
    std::vector<std::string> gaps_;
};
