#include "backends/occt/read/step_pieces.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <string_view>
#include <unordered_set>

#include "backends/occt/step/tokens.h"

namespace occt {
namespace {

using step::Instance;
using step::Part21;

/// Collects what a statement refers to.
class References : public step::TokenSink {
public:
    explicit References(std::vector<std::uint64_t>& out) : out_(out) {}

    void beginRecord(std::string_view) override {}
    void endRecord() override {}
    void beginList(std::string_view) override {}
    void endList() override {}
    void reference(std::uint64_t id) override { out_.push_back(id); }
    void value(Token, std::string_view) override {}

private:
    std::vector<std::uint64_t>& out_;
};

/// Kinds of which each is translated once, however often it is used: two products that share one
/// must not be parted.
constexpr std::array<std::string_view, 19> kShared = {
    "_REPRESENTATION",
    "REPRESENTATION_MAP",
    "MAPPED_ITEM",
    "MANIFOLD_SOLID_BREP",
    "BREP_WITH_VOIDS",
    "FACETED_BREP",
    "SURFACE_MODEL",
    "WIREFRAME_MODEL",
    "_SHELL",
    "_FACE",
    "FACE_SURFACE",
    "GEOMETRIC_SET",
    "GEOMETRIC_CURVE_SET",
    "CONNECTED_EDGE_SET",
    "CONNECTED_FACE_SET",
    "CONNECTED_FACE_SUB_SET",
    "SOLID_MODEL",
    "PRODUCT_DEFINITION_SHAPE",
    "PRODUCT_DEFINITION",
};

/// Where curves on surfaces serve for more than edges.
constexpr std::array<std::string_view, 6> kOtherUsersOfCurves = {
    "COMPOSITE_CURVE_SEGMENT", "BOUNDARY_CURVE", "CURVE_BOUNDED_SURFACE",
    "GEOMETRIC_SET",           "SUBEDGE",        "GEOMETRIC_CURVE_SET",
};

class Cutter {
public:
    Cutter(const Part21& file, const step::Products& products, std::size_t size)
        : file_(file), products_(products), size_(size) {}

    std::optional<StepPieces> run() {
        if (products_.products.empty() || !sound() || !link()) return std::nullopt;
        prepare();
        std::vector<std::uint32_t> definitions;
        for (const step::Product& product : products_.products) {
            definitions.push_back(file_.position(product.instance));
        }
        std::sort(definitions.begin(), definitions.end());
        for (std::uint32_t i = 0; i < definitions.size(); ++i) {
            if (!follow(definitions[i], i)) return std::nullopt;
        }
        return pieces();
    }

private:
    static constexpr std::uint32_t kNobody = std::numeric_limits<std::uint32_t>::max();

    bool sound() const {
        const bool whole = file_.brokenStatements() == 0 && file_.danglingReferences() == 0 &&
                           file_.repeatedNumbers() == 0;
        if (!whole) return false;
        // The reader holds numbers in 32 bits, with a sign.
        constexpr std::uint64_t largest = std::numeric_limits<std::int32_t>::max();
        return std::all_of(file_.instances().begin(), file_.instances().end(),
                           [](const Instance& next) { return next.id > 0 && next.id <= largest; });
    }

    /// Positions of what the instance refers to, in order; false when it can't be read.
    bool references(std::uint32_t position, std::vector<std::uint32_t>& out) {
        ids_.clear();
        References sink(ids_);
        if (!step::readTokens(file_, file_.instances()[position], sink)) return false;
        out.clear();
        for (const std::uint64_t id : ids_) out.push_back(file_.position(id));
        return true;
    }

    /// Links that lead from a product to its shapes, against the direction of the references.
    bool link() {
        std::vector<std::uint32_t> to;
        std::unordered_set<std::uint32_t> definitions;
        for (const step::Product& product : products_.products) {
            definitions.insert(file_.position(product.instance));
        }
        std::unordered_set<std::uint32_t> shapes;
        std::unordered_set<std::uint32_t> otherShapes;
        for (const std::uint32_t shape : file_.ofType("PRODUCT_DEFINITION_SHAPE")) {
            if (!references(shape, to) || to.size() != 1) return false;
            const bool ofProduct = definitions.count(to[0]) != 0;
            (ofProduct ? shapes : otherShapes).insert(shape);
            if (ofProduct) back_[to[0]].push_back(shape);
        }
        for (const std::uint32_t index : file_.ofType("SHAPE_DEFINITION_REPRESENTATION")) {
            if (!references(index, to) || to.size() != 2) return false;
            // A shape that a mere aspect of a product has may belong to the product's.
            if (shapes.count(to[0]) != 0)
                back_[to[0]].push_back(index);
            else if (otherShapes.count(to[0]) == 0)
                return false;
        }
        return linkRepresentations() && linkDocuments();
    }

    bool linkRepresentations() {
        std::vector<std::uint32_t> to;
        std::unordered_set<std::uint32_t> placing;
        if (products_.usageCount > 0) {
            for (const auto index : file_.ofType("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION")) {
                if (!references(index, to) || to.empty()) return false;
                placing.insert(to[0]);
            }
        }
        for (const std::uint32_t index : file_.ofType("SHAPE_REPRESENTATION_RELATIONSHIP")) {
            const bool simple = file_.instances()[index].type != Part21::kComplex;
            if (!simple || placing.count(index) != 0) continue;
            if (!references(index, to)) return false;
            for (const std::uint32_t representation : to) {
                back_[representation].push_back(index);
            }
        }
        return true;
    }

    /// Products that stand for documents are none that are translated; the reader sees it here.
    bool linkDocuments() {
        std::vector<std::uint32_t> to;
        for (const std::uint32_t index : file_.ofType("DOCUMENT_PRODUCT_EQUIVALENCE")) {
            if (!references(index, to)) return false;
            for (const std::uint32_t position : to) back_[position].push_back(index);
        }
        return true;
    }

    void prepare() {
        shared_.assign(file_.instances().size(), false);
        for (const std::string_view keyword : file_.keywords()) {
            const bool shared = std::any_of(kShared.begin(), kShared.end(),
                                            [&](auto end) { return keyword.ends_with(end); });
            // Curves in parameters are representations by name only.
            if (!shared || keyword == "DEFINITIONAL_REPRESENTATION") continue;
            for (const std::uint32_t index : file_.ofType(keyword)) shared_[index] = true;
        }
        owner_.assign(file_.instances().size(), kNobody);
        group_.resize(products_.products.size());
        std::iota(group_.begin(), group_.end(), 0U);
        members_.resize(products_.products.size());
        for (const std::uint64_t item : products_.usageItems) {
            leftOut_.insert(file_.position(item));
        }
        edge_ = file_.typeOf("EDGE_CURVE");
        curve_ = file_.typeOf("SURFACE_CURVE");
        inParameters_ = file_.typeOf("PCURVE");
        plane_ = file_.typeOf("PLANE");
        thins_ = std::all_of(kOtherUsersOfCurves.begin(), kOtherUsersOfCurves.end(),
                             [this](auto type) { return file_.ofType(type).empty(); });
    }

    bool is(std::uint32_t position, std::uint32_t type) const {
        return type != Part21::kComplex && file_.instances()[position].type == type;
    }

    /// Takes everything that a product needs.
    bool follow(std::uint32_t definition, std::uint32_t product) {
        std::vector<std::uint32_t>& members = members_[product];
        visit(definition, product);
        std::vector<std::uint32_t> to;
        for (std::size_t next = 0; next < members.size(); ++next) {
            const std::uint32_t position = members[next];
            if (!references(position, to)) return false;
            if (is(position, edge_)) thinEdge(to);
            if (is(position, curve_) && thins_) thinCurve(to, 1);
            for (const std::uint32_t other : to) visit(other, product);
            const auto back = back_.find(position);
            if (back == back_.end()) continue;
            for (const std::uint32_t other : back->second) visit(other, product);
        }
        return true;
    }

    void visit(std::uint32_t position, std::uint32_t product) {
        if (position == Part21::kNone || leftOut_.count(position) != 0) return;
        std::uint32_t& owner = owner_[position];
        if (owner == product) return;
        if (owner != kNobody && shared_[position]) {
            unite(owner, product);
            return;
        }
        owner = product;
        members_[product].push_back(position);
    }

    /// A curve beside which others stand in the parameters of two surfaces: drops those in
    /// planes, when at least `least` are left. `to` are the references of the curve.
    bool thinCurve(std::vector<std::uint32_t>& to, std::size_t least) {
        if (to.size() != 3) return false;
        std::array<std::uint32_t, 2> surfaces = {};
        for (std::size_t i = 0; i < 2; ++i) {
            if (!is(to[i + 1], inParameters_) || !references(to[i + 1], other_)) return false;
            if (other_.size() != 2) return false;
            surfaces[i] = other_[0];
        }
        // Both on one surface: the edge may be the surface's seam.
        if (surfaces[0] == surfaces[1]) return false;
        std::vector<std::uint32_t> kept = {to[0]};
        for (std::size_t i = 0; i < 2; ++i) {
            if (!is(surfaces[i], plane_)) kept.push_back(to[i + 1]);
        }
        if (kept.size() < least + 1) return false;
        to = std::move(kept);
        return true;
    }

    /// The same seen from the edge: when no curve in parameters is left, the curve in space does.
    void thinEdge(std::vector<std::uint32_t>& to) {
        if (to.size() != 3 || !is(to[2], curve_) || !references(to[2], curveReferences_)) return;
        if (!thinCurve(curveReferences_, 0) || curveReferences_.size() != 1) return;
        instead_.emplace_back(to[2], curveReferences_[0]);
        to[2] = curveReferences_[0];
    }

    std::uint32_t leader(std::uint32_t product) {
        while (group_[product] != product) {
            product = group_[product] = group_[group_[product]];
        }
        return product;
    }

    void unite(std::uint32_t a, std::uint32_t b) {
        a = leader(a);
        b = leader(b);
        group_[std::max(a, b)] = std::min(a, b);
    }

    StepPieces pieces() {
        std::vector<std::vector<std::uint32_t>> groups(members_.size());
        for (std::uint32_t i = 0; i < members_.size(); ++i) groups[leader(i)].push_back(i);
        StepPieces out;
        for (const auto& group : groups) {
            if (group.empty()) continue;
            if (out.pieces.empty() || out.pieces.back().size() >= size_) out.pieces.emplace_back();
            std::vector<std::uint32_t>& all = out.pieces.back();
            for (const std::uint32_t product : group) {
                all.insert(all.end(), members_[product].begin(), members_[product].end());
                members_[product] = {};
            }
        }
        for (std::vector<std::uint32_t>& all : out.pieces) {
            unify(all);
            all.shrink_to_fit();
        }
        unify(instead_);
        out.instead = std::move(instead_);
        return out;
    }

    template <typename T>
    static void unify(std::vector<T>& all) {
        std::sort(all.begin(), all.end());
        all.erase(std::unique(all.begin(), all.end()), all.end());
    }

    const Part21& file_;
    const step::Products& products_;
    std::size_t size_;
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> back_;
    std::unordered_set<std::uint32_t> leftOut_;
    std::vector<bool> shared_;                         // by position
    std::vector<std::uint32_t> owner_;                 // by position: who came last
    std::vector<std::uint32_t> group_;                 // by product
    std::vector<std::vector<std::uint32_t>> members_;  // by product
    std::uint32_t edge_ = 0;
    std::uint32_t curve_ = 0;
    std::uint32_t inParameters_ = 0;
    std::uint32_t plane_ = 0;
    bool thins_ = false;
    std::vector<std::uint64_t> ids_;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> instead_;
    std::vector<std::uint32_t> other_;
    std::vector<std::uint32_t> curveReferences_;
};

}  // namespace

std::optional<StepPieces> cutIntoPieces(const step::Part21& file, const step::Products& products,
                                        std::size_t size) {
    return Cutter(file, products, size).run();
}

}  // namespace occt
