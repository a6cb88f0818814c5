#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "backends/occt/document/description.h"
#include "backends/occt/exchange/exchange_entity.h"
#include "backends/occt/model.h"
#include "backends/occt/tree/flat_tree.h"

namespace occt {

class BinaryDocument;

/// Model over a description. The geometry is read from the folder when it is first asked for,
/// since the host that only shows names and numbers never does.
class OcctModel : public Model {
public:
    /// `description` must have a finite unfoldedSize(). `folder` may be empty: no shapes then.
    OcctModel(Description description, std::string folder);
    ~OcctModel() override;

    HPS::ComponentId root() const override { return 0; }
    std::uint32_t type(HPS::ComponentId id) const override { return tree_.type(id); }
    std::string name(HPS::ComponentId id) const override;
    std::size_t childCount(HPS::ComponentId id) const override { return tree_.childCount(id); }
    HPS::ComponentId child(HPS::ComponentId id, std::size_t index) const override {
        return tree_.child(id, index);
    }
    std::size_t countAll(HPS::ComponentId id, std::uint32_t type) const override {
        return tree_.countAll(id, type);
    }
    void collectAll(HPS::ComponentId id, std::uint32_t type,
                    std::vector<HPS::ComponentId>& out) const override {
        tree_.collectAll(id, type, out);
    }
    std::vector<HPS::ComponentId> owners(HPS::ComponentId id) const override;
    std::vector<std::shared_ptr<const HPS::MetadataValue>> metadata(
        HPS::ComponentId id) const override;
    const void* exchangeEntity(HPS::ComponentId id) const override;

    gp_Trsf placement(HPS::ComponentId id) const override;
    TopoDS_Shape shape(HPS::ComponentId item) const override;
    std::size_t definition(HPS::ComponentId id) const override;
    std::size_t definitionCount() const override { return description_.definitions.size(); }
    const bxtexchange::BodyIdentity* identity(HPS::ComponentId item) const override;
    std::string contentDigest(HPS::ComponentId item) const override;
    double unitMm() const override { return description_.unitMm; }
    std::vector<std::string> gaps() const override { return description_.gaps; }

    /// Whether the item is one of several B-rep bodies of its part.
    bool isMultiBody(HPS::ComponentId item) const;

    /// Item of product and manufacturing information; null for any other component.
    const DescribedPmi* pmi(HPS::ComponentId id) const;

private:
    using MetadataList = std::vector<std::shared_ptr<const HPS::MetadataValue>>;
    struct Prepared {
        MetadataList metadata;
        std::vector<MetadataList> pmi;
        ExchangeEntity occurrence;
        std::vector<ExchangeEntity> items;
        std::size_t bodies = 0;  ///< exact bodies among the items
    };

    void prepare(const DescribedDefinition& definition);
    const DescribedItem* item(HPS::ComponentId id) const;

    Description description_;
    std::string folder_;
    FlatTree tree_;
    std::vector<Prepared> prepared_;
    MetadataList rootMetadata_;  ///< its definition's and the file's own
    ExchangeEntity file_;
    mutable std::once_flag opened_;
    mutable std::unique_ptr<BinaryDocument> document_;
    mutable std::mutex documentMutex_;
};

}  // namespace occt
