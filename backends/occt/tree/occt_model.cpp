#include "backends/occt/tree/occt_model.h"

#include <Standard_Failure.hxx>
#include <gp_Trsf.hxx>

#include "backends/occt/document/binary_document.h"
#include "backends/occt/tree/unique_keys.h"
#include "platform/hps/component_type.h"

namespace occt {
namespace {

template <typename List>
auto shared(const List& values) {
    std::vector<std::shared_ptr<const HPS::MetadataValue>> out;
    for (const auto& value : values) {
        out.push_back(std::make_shared<const HPS::MetadataValue>(value));
    }
    return out;
}

}  // namespace

OcctModel::OcctModel(Description description, std::string folder)
    : description_(std::move(description)), folder_(std::move(folder)), tree_(description_) {
    prepared_.reserve(description_.definitions.size());
    for (const DescribedDefinition& definition : description_.definitions) prepare(definition);
    rootMetadata_ = prepared_[description_.root].metadata;
    for (auto& value : shared(description_.fileMetadata)) rootMetadata_.push_back(std::move(value));
    makeKeysUnique(rootMetadata_);
    file_.kind = ExchangeEntity::Kind::ModelFile;
    file_.unitMm = description_.definitions[description_.root].unitMm;
}

OcctModel::~OcctModel() = default;

void OcctModel::prepare(const DescribedDefinition& definition) {
    Prepared out;
    out.metadata = shared(std::vector{HPS::MetadataValue{"Units", definition.unitName}});
    for (auto& value : shared(definition.metadata)) out.metadata.push_back(std::move(value));
    makeKeysUnique(out.metadata);
    for (const DescribedPmi& pmi : definition.pmi) out.pmi.push_back(shared(pmi.metadata));
    out.occurrence.kind = ExchangeEntity::Kind::Occurrence;
    out.occurrence.unitMm = definition.unitMm;
    for (const DescribedItem& item : definition.items) {
        ExchangeEntity entity;
        entity.kind = item.type == HPS::ComponentType::PolyBrepModel
                          ? ExchangeEntity::Kind::MeshBody
                          : ExchangeEntity::Kind::Body;
        entity.unitMm = definition.unitMm;
        entity.measured = item.identity && item.closed;
        if (item.identity) {
            entity.volumeMm3 = item.identity->volumeMm3;
            entity.areaMm2 = item.identity->areaMm2;
        }
        out.items.push_back(entity);
        out.bodies += item.type == HPS::ComponentType::BrepModel ? 1 : 0;
    }
    prepared_.push_back(std::move(out));
}

const DescribedItem* OcctModel::item(HPS::ComponentId id) const {
    const FlatTree::Node& node = tree_.node(id);
    if (node.kind != FlatTree::Kind::Item) return nullptr;
    return &description_.definitions[node.definition].items[node.local];
}

const DescribedPmi* OcctModel::pmi(HPS::ComponentId id) const {
    const FlatTree::Node& node = tree_.node(id);
    if (node.kind != FlatTree::Kind::Pmi) return nullptr;
    return &description_.definitions[node.definition].pmi[node.local];
}

std::string OcctModel::name(HPS::ComponentId id) const {
    const FlatTree::Node& node = tree_.node(id);
    const DescribedDefinition& definition = description_.definitions[node.definition];
    switch (node.kind) {
        case FlatTree::Kind::Item: return definition.items[node.local].name;
        case FlatTree::Kind::Pmi: return definition.pmi[node.local].name;
        default: return definition.name;
    }
}

std::vector<HPS::ComponentId> OcctModel::owners(HPS::ComponentId id) const {
    std::vector<HPS::ComponentId> out;
    for (auto next = tree_.node(id).parent; next != FlatTree::kNone;) {
        out.push_back(next);
        next = tree_.node(next).parent;
    }
    return out;
}

std::vector<std::shared_ptr<const HPS::MetadataValue>> OcctModel::metadata(
    HPS::ComponentId id) const {
    const FlatTree::Node& node = tree_.node(id);
    const Prepared& prepared = prepared_[node.definition];
    if (node.kind == FlatTree::Kind::Pmi) return prepared.pmi[node.local];
    if (node.kind != FlatTree::Kind::Occurrence) return {};
    if (node.local == FlatTree::kNone) return rootMetadata_;
    const std::uint32_t above = tree_.node(node.parent).definition;
    const auto& own = description_.definitions[above].usages[node.local].metadata;
    if (own.empty()) return prepared.metadata;
    MetadataList out = prepared.metadata;
    for (auto& value : shared(own)) out.push_back(std::move(value));
    makeKeysUnique(out);
    return out;
}

const void* OcctModel::exchangeEntity(HPS::ComponentId id) const {
    const FlatTree::Node& node = tree_.node(id);
    const Prepared& prepared = prepared_[node.definition];
    switch (node.kind) {
        case FlatTree::Kind::ModelFile: return &file_;
        case FlatTree::Kind::Occurrence: return &prepared.occurrence;
        case FlatTree::Kind::Item: {
            const std::uint32_t type =
                description_.definitions[node.definition].items[node.local].type;
            const bool body =
                type == HPS::ComponentType::BrepModel || type == HPS::ComponentType::PolyBrepModel;
            return body ? &prepared.items[node.local] : nullptr;
        }
        default: return nullptr;
    }
}

gp_Trsf OcctModel::placement(HPS::ComponentId id) const {
    const Placement& p = tree_.placement(id);
    gp_Trsf out;
    if (p == kNoMove) return out;
    try {
        out.SetValues(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], p[8], p[9], p[10], p[11]);
    } catch (const Standard_Failure&) {
        // Scales that vanish on the way down leave no placement.
        return {};
    }
    return out;
}

TopoDS_Shape OcctModel::shape(HPS::ComponentId id) const {
    const DescribedItem* const described = item(id);
    if (described == nullptr || described->label.empty() || folder_.empty()) return {};
    std::call_once(opened_, [this] {
        auto document = std::make_unique<BinaryDocument>();
        std::string error;
        const std::string path = folder_ + "/" + kDocumentFile;
        if (document->open(path, description_.document, error)) document_ = std::move(document);
    });
    if (!document_) return {};
    const std::lock_guard lock(documentMutex_);
    return document_->shape(described->label, described->path);
}

std::size_t OcctModel::definition(HPS::ComponentId id) const {
    return tree_.node(id).definition;
}

const bxtexchange::BodyIdentity* OcctModel::identity(HPS::ComponentId id) const {
    const DescribedItem* const described = item(id);
    return described != nullptr && described->identity ? &*described->identity : nullptr;
}

std::string OcctModel::contentDigest(HPS::ComponentId id) const {
    const DescribedItem* const described = item(id);
    return described != nullptr ? described->digest : std::string();
}

bool OcctModel::isMultiBody(HPS::ComponentId id) const {
    const DescribedItem* const described = item(id);
    return described != nullptr && described->type == HPS::ComponentType::BrepModel &&
           prepared_[tree_.node(id).definition].bodies > 1;
}

}  // namespace occt
