#include "backends/occt/step/products.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "backends/occt/step/units.h"

namespace occt::step {
namespace {

constexpr std::uint64_t kMany = std::uint64_t{1} << 62;
// Entities on the way to a product; aspects refer to a handful.
constexpr std::size_t kMostLookedAt = 1000;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(const std::string& text) {
    return text.find_first_not_of(" \t") == std::string::npos;
}

/// Usages below a product in the order in which their numbers are final.
bool usageLess(const Products& all, const ProductUsage& a, const ProductUsage& b) {
    if (a.id != b.id) return naturalLess(a.id, b.id);
    const Product& productA = all.products[a.product];
    const Product& productB = all.products[b.product];
    return std::tie(productA.name, a.name, a.placement, productA.id, productA.description) <
           std::tie(productB.name, b.name, b.placement, productB.id, productB.description);
}

/// Reads the file's structure into a Products.
class ProductReader {
public:
    explicit ProductReader(const Part21& file) : file_(file) {}

    Products read() {
        defaultUnitMm_ = fileUnitMm(file_);
        definitions();
        shapes();
        relatedRepresentations();
        usages();
        mappedPlacements();
        placements();
        documents();
        finish();
        return std::move(out_);
    }

private:
    using Index = std::unordered_map<std::uint64_t, std::size_t>;

    const Instance& at(std::uint32_t index) const { return file_.instances()[index]; }

    Record first(std::uint32_t index) const {
        auto records = file_.read(at(index));
        return records.empty() ? Record{} : std::move(records.front());
    }

    /// Record of any instance; an empty one when it can't be read.
    Record any(std::uint64_t id) const {
        const Instance* const instance = id != 0 ? file_.find(id) : nullptr;
        if (instance == nullptr) return {};
        auto records = file_.read(*instance);
        return records.empty() ? Record{} : std::move(records.front());
    }

    void definitions() {
        for (const char* keyword :
             {"PRODUCT_DEFINITION", "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS"}) {
            for (const std::uint32_t index : file_.ofType(keyword)) {
                const auto record = file_.read(at(index).id, keyword);
                if (!record || known_.count(at(index).id) != 0) continue;
                Product product;
                product.instance = at(index).id;
                product.unitMm = defaultUnitMm_;
                const Record formation = any(record->reference(2));
                product.version = formation.text(0);
                const Record owner = any(formation.reference(2));
                if (owner.keyword == "PRODUCT") {
                    product.id = owner.text(0);
                    for (const std::size_t place : {std::size_t{0}, std::size_t{1}}) {
                        if (!isBlank(owner.text(place))) product.name = owner.text(place);
                    }
                    product.description = owner.text(2);
                }
                known_[product.instance] = out_.products.size();
                out_.products.push_back(std::move(product));
            }
        }
    }

    void shapes() {
        for (const std::uint32_t index : file_.ofType("PRODUCT_DEFINITION_SHAPE")) {
            const auto record = file_.read(at(index).id, "PRODUCT_DEFINITION_SHAPE");
            if (record) shapeOwner_[at(index).id] = record->reference(2);
        }
        for (const std::uint32_t index : file_.ofType("SHAPE_DEFINITION_REPRESENTATION")) {
            const Record record = first(index);
            const auto shape = shapeOwner_.find(record.reference(0));
            const auto owner =
                shape == shapeOwner_.end() ? known_.end() : known_.find(shape->second);
            if (owner == known_.end()) continue;
            Product& product = out_.products[owner->second];
            product.representations.push_back(record.reference(1));
            owners_[record.reference(1)] = owner->second;
            const double unit = representationUnit(record.reference(1));
            if (unit > 0.0) product.unitMm = unit;
        }
    }

    double representationUnit(std::uint64_t representation) {
        const auto known = units_.find(representation);
        if (known != units_.end()) return known->second;
        const Record record = any(representation);
        return units_[representation] = contextUnit(record.reference(2));
    }

    /// Most representations share one context.
    double contextUnit(std::uint64_t context) {
        const auto [known, isNew] = contextUnits_.try_emplace(context, 0.0);
        if (isNew && context != 0) known->second = contextUnitMm(file_, context);
        return known->second;
    }

    double unitOr(std::uint64_t representation) {
        const double unit = representationUnit(representation);
        return unit > 0.0 ? unit : defaultUnitMm_;
    }

    void usages() {
        for (const std::uint32_t index : file_.ofType("NEXT_ASSEMBLY_USAGE_OCCURRENCE")) {
            const std::uint64_t id = at(index).id;
            const auto records = file_.read(at(index));
            ++out_.usageCount;
            // In a complex instance the parts of the usage stand in several records.
            ProductUsage usage;
            std::uint64_t relating = 0;
            std::uint64_t related = 0;
            for (const Record& record : records) {
                if (record.values.size() < 5) continue;
                usage.id = record.text(0);
                usage.name = record.text(1);
                relating = record.reference(3);
                related = record.reference(4);
            }
            const auto parent = known_.find(relating);
            const auto child = known_.find(related);
            if (parent == known_.end() || child == known_.end()) {
                ++out_.brokenUsages;
                continue;
            }
            usage.product = child->second;
            usage.instance = id;
            usagePlace_[id] = {parent->second, out_.products[parent->second].usages.size()};
            out_.products[parent->second].usages.push_back(std::move(usage));
            out_.products[child->second].isUsed = true;
        }
    }

    void placements() {
        for (const std::uint32_t index : file_.ofType("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION")) {
            const Record record = first(index);
            const auto owner = shapeOwner_.find(record.reference(1));
            const auto place =
                owner == shapeOwner_.end() ? usagePlace_.end() : usagePlace_.find(owner->second);
            if (place == usagePlace_.end()) continue;
            const auto [parent, number] = place->second;
            ProductUsage& usage = out_.products[parent].usages[number];
            if (const auto matrix = relationMatrix(record.reference(0), parent, usage.product)) {
                usage.placement = *matrix;
                usage.placed = true;
            }
        }
    }

    std::optional<Matrix> relationMatrix(std::uint64_t relation, std::size_t parent,
                                         std::size_t child) {
        const Instance* const instance = file_.find(relation);
        if (instance == nullptr) return std::nullopt;
        std::uint64_t from = 0;
        std::uint64_t to = 0;
        std::uint64_t transformation = 0;
        for (const Record& record : file_.read(*instance)) {
            if (record.keyword == "REPRESENTATION_RELATIONSHIP") {
                from = record.reference(2);
                to = record.reference(3);
            } else if (record.keyword == "REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION") {
                // Alone it carries the inherited parameters in front of its own.
                if (record.values.size() >= 5) {
                    from = record.reference(2);
                    to = record.reference(3);
                }
                if (!record.values.empty()) {
                    transformation = record.reference(record.values.size() - 1);
                }
            }
        }
        return transformationMatrix(transformation, {from, to}, parent, child);
    }

    bool holds(std::uint64_t representation, std::uint64_t item) {
        const auto [held, isNew] = items_.try_emplace(representation);
        if (isNew) {
            const Record record = any(representation);
            for (const Value& value : record.at(1).items) held->second.insert(value.reference);
        }
        return held->second.count(item) != 0;
    }

    bool ownedBy(std::uint64_t representation, std::size_t product) const {
        const auto& all = out_.products[product].representations;
        if (std::find(all.begin(), all.end(), representation) != all.end()) return true;
        const auto owner = owners_.find(representation);
        return owner != owners_.end() && owner->second == product;
    }

    /// `related` are the two representations as the relation lists them. By the rule the used
    /// product's comes first, and the items stand in the same order; some writers turn either.
    std::optional<Matrix> transformationMatrix(std::uint64_t id,
                                               std::pair<std::uint64_t, std::uint64_t> related,
                                               std::size_t parent, std::size_t child) {
        auto [from, to] = related;
        const bool turned = ownedBy(from, parent) && !ownedBy(from, child);
        if (turned) std::swap(from, to);
        const auto record = file_.read(id, "ITEM_DEFINED_TRANSFORMATION");
        if (!record) {
            auto matrix = transformationOperator(file_, id, unitOr(to));
            return matrix && turned ? inverse(*matrix) : matrix;
        }
        std::uint64_t source = record->reference(2);
        std::uint64_t target = record->reference(3);
        const bool straight = holds(from, source) || holds(to, target);
        const bool crossed = holds(from, target) && holds(to, source);
        if (!straight && (turned || crossed)) std::swap(source, target);
        const auto origin = axisPlacement(file_, source, unitOr(from));
        const auto place = axisPlacement(file_, target, unitOr(to));
        const auto back = origin ? inverse(*origin) : std::nullopt;
        if (!place || !back) return std::nullopt;
        return multiply(*place, *back);
    }

    /// Placements by MAPPED_ITEM, for usages of files that have no placing relations.
    void mappedPlacements() {
        if (file_.ofType("MAPPED_ITEM").empty() || out_.usageCount == 0) return;
        for (Product& parent : out_.products) {
            if (parent.usages.empty()) continue;
            // Last first, so that the next one stands at the end.
            std::unordered_map<std::size_t, std::vector<std::size_t>> open;
            for (std::size_t i = parent.usages.size(); i > 0; --i) {
                open[parent.usages[i - 1].product].push_back(i - 1);
            }
            for (const std::uint64_t representation : parent.representations) {
                const Record record = any(representation);
                for (const Value& item : record.at(1).items) {
                    mappedItem(parent, open, item.reference, unitOr(representation));
                }
            }
        }
    }

    /// Follows relations from each product's own representations outwards.
    void relatedRepresentations() {
        std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> related;
        for (const std::uint32_t index : file_.ofType("SHAPE_REPRESENTATION_RELATIONSHIP")) {
            if (at(index).type == Part21::kComplex) continue;
            const Record record = first(index);
            related[record.reference(2)].push_back(record.reference(3));
            related[record.reference(3)].push_back(record.reference(2));
        }
        for (std::size_t number = 0; number < out_.products.size(); ++number) {
            Product& product = out_.products[number];
            std::vector<std::uint64_t> open = product.representations;
            for (std::size_t next = 0; next < open.size(); ++next) {
                for (const std::uint64_t other : related[open[next]]) {
                    if (other == 0 || !owners_.emplace(other, number).second) continue;
                    product.relatedRepresentations.push_back(other);
                    open.push_back(other);
                }
            }
        }
    }

    void mappedItem(Product& parent,
                    std::unordered_map<std::size_t, std::vector<std::size_t>>& open,
                    std::uint64_t id, double unitMm) {
        const auto item = file_.read(id, "MAPPED_ITEM");
        if (!item) return;
        const auto map = file_.read(item->reference(1), "REPRESENTATION_MAP");
        if (!map) return;
        const auto owner = owners_.find(map->reference(1));
        if (owner == owners_.end()) return;
        const auto usages = open.find(owner->second);
        if (usages == open.end() || usages->second.empty()) return;
        const auto source = axisPlacement(file_, map->reference(0), unitOr(map->reference(1)));
        auto target = axisPlacement(file_, item->reference(2), unitMm);
        if (!target) target = transformationOperator(file_, item->reference(2), unitMm);
        const auto back = source ? inverse(*source) : std::nullopt;
        if (!target || !back) return;
        ProductUsage& usage = parent.usages[usages->second.back()];
        usages->second.pop_back();
        usage.placement = multiply(*target, *back);
        usage.placed = true;
        out_.usageItems.push_back(id);
    }

    /// Files that the text names as the place of a product's geometry.
    void documents() {
        std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> referring;
        for (const std::uint32_t index : file_.ofType("APPLIED_DOCUMENT_REFERENCE")) {
            const Record record = first(index);
            collectReferences(record.at(2), referring[record.reference(0)]);
        }
        for (const std::uint32_t index :
             file_.ofType("APPLIED_EXTERNAL_IDENTIFICATION_ASSIGNMENT")) {
            const Record record = first(index);
            std::vector<std::uint64_t> documents;
            collectReferences(record.at(3), documents);
            for (const std::uint64_t document : documents) {
                for (const std::uint64_t item : referring[document]) {
                    const auto product = known_.find(item);
                    if (product == known_.end() || record.text(0).empty()) continue;
                    out_.products[product->second].fileName = record.text(0);
                }
            }
        }
    }

    void finish() {
        for (Product& product : out_.products) {
            std::sort(product.usages.begin(), product.usages.end(),
                      [this](const ProductUsage& a, const ProductUsage& b) {
                          return usageLess(out_, a, b);
                      });
        }
        for (const bool withContent : {true, false}) {
            for (std::size_t i = 0; i < out_.products.size(); ++i) {
                const Product& product = out_.products[i];
                const bool content = !product.usages.empty() || !product.representations.empty();
                if (!product.isUsed && content == withContent) out_.roots.push_back(i);
            }
            if (!out_.roots.empty()) break;
        }
        std::stable_sort(out_.roots.begin(), out_.roots.end(),
                         [this](std::size_t a, std::size_t b) {
                             const Product& left = out_.products[a];
                             const Product& right = out_.products[b];
                             return std::tie(left.name, left.id, left.description) <
                                    std::tie(right.name, right.id, right.description);
                         });
    }

    const Part21& file_;
    Products out_;
    double defaultUnitMm_ = 1.0;
    Index known_;   // product definition -> product
    Index owners_;  // representation -> product
    std::unordered_map<std::uint64_t, std::uint64_t> shapeOwner_;
    std::unordered_map<std::uint64_t, double> units_;         // by representation
    std::unordered_map<std::uint64_t, double> contextUnits_;  // by context
    std::unordered_map<std::uint64_t, std::unordered_set<std::uint64_t>> items_;
    std::unordered_map<std::uint64_t, std::pair<std::size_t, std::size_t>> usagePlace_;
};

/// Products so that each stands behind all that use it; shorter than all when there is a cycle.
std::vector<std::size_t> usersFirst(const std::vector<Product>& products) {
    std::vector<std::size_t> open(products.size(), 0);
    for (const Product& product : products) {
        for (const ProductUsage& usage : product.usages) ++open[usage.product];
    }
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < products.size(); ++i) {
        if (open[i] == 0) order.push_back(i);
    }
    for (std::size_t next = 0; next < order.size(); ++next) {
        for (const ProductUsage& usage : products[order[next]].usages) {
            if (--open[usage.product] == 0) order.push_back(usage.product);
        }
    }
    return order;
}

}  // namespace

std::vector<std::size_t> Products::cycle() const {
    const auto order = usersFirst(products);
    if (order.size() == products.size()) return {};
    std::vector<bool> sound(products.size(), false);
    for (const std::size_t product : order) sound[product] = true;
    // What is left leads into a cycle backwards: every such product has such a user.
    std::vector<std::size_t> user(products.size(), products.size());
    for (std::size_t i = 0; i < products.size(); ++i) {
        if (sound[i]) continue;
        for (const ProductUsage& usage : products[i].usages) user[usage.product] = i;
    }
    const auto begin =
        static_cast<std::size_t>(std::find(sound.begin(), sound.end(), false) - sound.begin());
    std::vector<bool> seen(products.size(), false);
    std::size_t next = begin;
    while (!seen[next]) {
        seen[next] = true;
        next = user[next];
    }
    std::vector<std::size_t> path = {next};
    for (std::size_t above = user[next]; above != next; above = user[above]) path.push_back(above);
    path.push_back(next);
    std::reverse(path.begin(), path.end());
    return path;
}

std::uint64_t Products::occurrenceCount() const {
    const auto order = usersFirst(products);
    std::vector<std::uint64_t> below(products.size(), 1);
    for (auto next = order.rbegin(); next != order.rend(); ++next) {
        std::uint64_t sum = 1;
        for (const ProductUsage& usage : products[*next].usages) {
            sum = std::min(kMany, sum + below[usage.product]);
        }
        below[*next] = sum;
    }
    std::uint64_t total = 0;
    for (const std::size_t root : roots) total = std::min(kMany, total + below[root]);
    return total;
}

ProductFinder::ProductFinder(const Part21& file, const Products& products) : file_(file) {
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        products_[products.products[i].instance] = i;
    }
    for (const std::uint32_t index : file.ofType("PRODUCT_DEFINITION_SHAPE")) {
        const std::uint64_t shape = file.instances()[index].id;
        const auto record = file.read(shape, "PRODUCT_DEFINITION_SHAPE");
        const auto product = record ? find(record->reference(2)) : std::nullopt;
        if (product) products_[shape] = *product;
    }
}

std::optional<std::size_t> ProductFinder::find(std::uint64_t definition) const {
    const auto found = products_.find(definition);
    if (found == products_.end()) return std::nullopt;
    return found->second;
}

std::optional<std::size_t> ProductFinder::productOf(std::uint64_t entity) const {
    // Aspects refer to aspects; what is further away belongs to something else.
    constexpr int farthest = 4;
    std::unordered_set<std::uint64_t> seen = {entity};
    std::vector<std::uint64_t> ring = {entity};
    for (int distance = 0; distance <= farthest && !ring.empty(); ++distance) {
        std::vector<std::uint64_t> next;
        for (const std::uint64_t id : ring) {
            if (const auto product = find(id)) return product;
            for (const std::uint64_t other : referencesOf(id)) {
                if (seen.size() >= kMostLookedAt) break;
                if (seen.insert(other).second) next.push_back(other);
            }
        }
        ring = std::move(next);
    }
    return std::nullopt;
}

const std::vector<std::uint64_t>& ProductFinder::referencesOf(std::uint64_t entity) const {
    const auto [place, isNew] = references_.try_emplace(entity);
    const Instance* const instance = isNew ? file_.find(entity) : nullptr;
    if (instance == nullptr) return place->second;
    std::vector<std::uint64_t> all;
    for (const Record& record : file_.read(*instance)) {
        for (const Value& value : record.values) collectReferences(value, all);
    }
    all.resize(std::min(all.size(), kMostLookedAt));
    return place->second = std::move(all);
}

Products readProducts(const Part21& file) {
    return ProductReader(file).read();
}

bool naturalLess(const std::string& a, const std::string& b) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (!isDigit(a[i]) || !isDigit(b[j])) {
            if (a[i] != b[j]) {
                return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[j]);
            }
            ++i;
            ++j;
            continue;
        }
        while (i < a.size() && a[i] == '0') ++i;
        while (j < b.size() && b[j] == '0') ++j;
        const std::size_t firstA = i;
        const std::size_t firstB = j;
        while (i < a.size() && isDigit(a[i])) ++i;
        while (j < b.size() && isDigit(b[j])) ++j;
        if (i - firstA != j - firstB) return i - firstA < j - firstB;
        const int order = a.compare(firstA, i - firstA, b, firstB, j - firstB);
        if (order != 0) return order < 0;
    }
    if (a.size() - i != b.size() - j) return a.size() - i < b.size() - j;
    return a < b;
}

}  // namespace occt::step
