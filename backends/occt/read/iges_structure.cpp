#include "backends/occt/read/iges_structure.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_map>

#include "backends/occt/step/placements.h"

namespace occt::iges {
namespace {

constexpr std::size_t kLongestChain = 16;

struct UnitFlag {
    int flag;
    const char* name;
    double lengthMm;
};

constexpr UnitFlag kUnits[] = {
    {1, "IN", 25.4},      {1, "INCH", 25.4}, {2, "MM", 1.0},         {4, "FT", 304.8},
    {5, "MI", 1609344.0}, {6, "M", 1000.0},  {7, "KM", 1000000.0},   {8, "MIL", 0.0254},
    {9, "UM", 0.001},     {10, "CM", 10.0},  {11, "UIN", 0.0000254},
};

constexpr int kUnitByName = 3;

double unitLength(const Text& text) {
    const Value& flag = text.global(14);
    const int number = flag.kind == Value::Kind::Number ? static_cast<int>(flag.number) : 0;
    for (const UnitFlag& unit : kUnits) {
        const bool byName = number == kUnitByName && text.global(15).text == unit.name;
        if (byName || number == unit.flag) return unit.lengthMm;
    }
    return 0.0;
}

/// Placement by a chain of matrices; none for a broken one.
Placement placementOf(const Text& text, std::uint32_t number, double mm) {
    Placement placement = kNoMove;
    for (std::size_t i = 0; number != 0 && i < kLongestChain; ++i) {
        const Entity* const entity = text.find(number);
        if (!entity || entity->type != 124) break;
        const std::vector<Value> values = text.values(*entity);
        Placement matrix = kNoMove;
        for (std::size_t k = 0; k < matrix.size() && k + 1 < values.size(); ++k) {
            if (values[k + 1].kind != Value::Kind::Number) continue;
            matrix[k] = values[k + 1].number * (k % 4 == 3 ? mm : 1.0);
        }
        placement = step::multiply(matrix, placement);
        number = entity->transform;
    }
    return placement;
}

class StructureReader {
public:
    explicit StructureReader(const Text& text) : text_(text), mm_(unitMm(text)) {}

    Structure read() {
        const std::vector<bool> isUsed = findUsed();
        findProducts();
        out_.nodes.emplace_back();
        sources_.push_back(0);
        std::vector<std::uint32_t> free;
        for (std::size_t i = 0; i < isUsed.size(); ++i) {
            const Entity& entity = text_.entities()[i];
            const bool stands = isStructure(entity) || kindOf(entity) != Kind::None;
            if (!isUsed[i] && stands) free.push_back(Text::numberOf(i));
        }
        addMembers(0, free);
        // Nodes come to the end of the list as they are met.
        for (std::size_t i = 1; i < out_.nodes.size(); ++i) fill(i);
        breakCircles();
        findUnused(isUsed);
        return std::move(out_);
    }

private:
    static bool isStructure(const Entity& entity) {
        constexpr int types[] = {184, 408, 412, 414, 416, 420, 430};
        return isGroup(entity) ||
               std::find(std::begin(types), std::end(types), entity.type) != std::end(types);
    }

    std::vector<bool> findUsed() const {
        std::vector<bool> used(text_.entities().size(), false);
        for (const Entity& entity : text_.entities()) {
            for (const std::uint32_t part : partsOf(text_, entity)) used[part / 2] = true;
        }
        return used;
    }

    std::size_t nodeOf(std::uint32_t number) {
        const auto fresh = nodes_.try_emplace(number, out_.nodes.size());
        if (fresh.second) {
            out_.nodes.emplace_back();
            sources_.push_back(number);
        }
        return fresh.first->second;
    }

    void fill(std::size_t number) {
        const std::uint32_t source = sources_[number];
        const Entity& entity = *text_.find(source);
        out_.nodes[number].name = nodeName(source, entity);
        if (entity.type == 184) {
            addSolids(number, entity);
        } else if (entity.type == 308 || isGroup(entity)) {
            addMembers(number, partsOf(text_, entity));
        } else {
            out_.nodes[number].shapes.push_back({source});
        }
    }

    std::string nodeName(std::uint32_t number, const Entity& entity) const {
        if (entity.type == 308) {
            const std::vector<Value> values = text_.values(entity);
            if (values.size() > 2 && !values[2].text.empty()) return values[2].text;
        }
        return nameOf(text_, number);
    }

    void addMembers(std::size_t node, const std::vector<std::uint32_t>& members) {
        std::vector<std::vector<std::uint32_t>> open = {members};
        std::set<std::uint32_t> opened;
        while (!open.empty()) {
            const std::vector<std::uint32_t> some = std::move(open.back());
            open.pop_back();
            std::vector<std::uint32_t> shapes;
            std::vector<std::vector<std::uint32_t>> inner;
            for (const std::uint32_t member : some) {
                const Entity& entity = *text_.find(member);
                if (isGroup(entity) && !isProduct_[member / 2]) {
                    if (opened.insert(member).second) inner.push_back(partsOf(text_, entity));
                } else if (isGroup(entity) || isStructure(entity)) {
                    addUsage(node, member, entity);
                } else if (kindOf(entity) != Kind::None) {
                    shapes.push_back(member);
                }
            }
            if (!shapes.empty()) out_.nodes[node].shapes.push_back(std::move(shapes));
            std::move(inner.rbegin(), inner.rend(), std::back_inserter(open));
        }
    }

    /// A group is a product when it has a name, or when it holds products.
    void findProducts() {
        const std::vector<Entity>& entities = text_.entities();
        isProduct_.assign(entities.size(), false);
        std::vector<std::vector<std::size_t>> holders(entities.size());
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < entities.size(); ++i) {
            if (!isGroup(entities[i])) continue;
            bool is = !nameOf(text_, Text::numberOf(i)).empty();
            for (const std::uint32_t part : partsOf(text_, entities[i])) {
                const Entity& entity = *text_.find(part);
                if (isGroup(entity)) {
                    holders[part / 2].push_back(i);
                } else {
                    is = is || isStructure(entity);
                }
            }
            if (is) open.push_back(i);
            isProduct_[i] = is;
        }
        while (!open.empty()) {
            const std::size_t held = open.back();
            open.pop_back();
            for (const std::size_t holder : holders[held]) {
                if (isProduct_[holder]) continue;
                isProduct_[holder] = true;
                open.push_back(holder);
            }
        }
    }

    void addUsage(std::size_t node, std::uint32_t number, const Entity& entity) {
        if (entity.type == 412 || entity.type == 414 || entity.type == 416 || entity.type == 420) {
            ++out_.unread;
            return;
        }
        ++out_.usageCount;
        if (isGroup(entity)) {
            use(node, number, kNoMove);
            return;
        }
        if (entity.type == 184) {
            use(node, number, placementOf(text_, entity.transform, mm_));
            return;
        }
        const std::vector<Value> values = text_.values(entity);
        const std::uint32_t target = values.size() > 1 ? values[1].pointer() : 0;
        const Entity* const used = text_.find(target);
        const bool fits =
            used && (entity.type == 408 ? used->type == 308
                                        : kindOf(*used) == Kind::Solid || used->type == 184);
        if (!fits) {
            ++out_.brokenUsages;
            return;
        }
        Placement own = kNoMove;
        if (entity.type == 408) {
            const auto number_ = [&values](std::size_t at, double otherwise) {
                const bool is = at < values.size() && values[at].kind == Value::Kind::Number;
                return is ? values[at].number : otherwise;
            };
            const double scale = number_(5, 1.0);
            for (const std::size_t i : {0U, 5U, 10U}) own[i] = scale != 0.0 ? scale : 1.0;
            for (std::size_t i = 0; i < 3; ++i) own[4 * i + 3] = number_(2 + i, 0.0) * mm_;
        }
        use(node, target, step::multiply(placementOf(text_, entity.transform, mm_), own));
    }

    void use(std::size_t node, std::uint32_t number, const Placement& placement) {
        const std::size_t used = nodeOf(number);
        out_.nodes[node].usages.push_back({used, placement});
    }

    /// A solid assembly lists its solids and behind them a matrix for each.
    void addSolids(std::size_t node, const Entity& entity) {
        const std::vector<Value> values = text_.values(entity);
        const std::size_t count =
            values.size() > 1 ? std::min<std::size_t>(values[1].pointer(), values.size()) : 0;
        for (std::size_t i = 0; i < count; ++i) {
            ++out_.usageCount;
            const std::uint32_t solid = 2 + i < values.size() ? values[2 + i].pointer() : 0;
            const Entity* const used = text_.find(solid);
            if (!used) {
                ++out_.brokenUsages;
                continue;
            }
            const std::size_t at = 2 + count + i;
            const std::uint32_t matrix = at < values.size() ? values[at].pointer() : 0;
            if (used->type == 430) {
                const std::vector<Value> instance = text_.values(*used);
                const std::uint32_t target = instance.size() > 1 ? instance[1].pointer() : 0;
                if (!text_.find(target)) {
                    ++out_.brokenUsages;
                    continue;
                }
                use(node, target,
                    step::multiply(placementOf(text_, matrix, mm_),
                                   placementOf(text_, used->transform, mm_)));
            } else {
                use(node, solid, placementOf(text_, matrix, mm_));
            }
        }
    }

    /// Drops usages by which a node would contain itself.
    void breakCircles() {
        enum class State : char { New, Open, Done };
        std::vector<State> states(out_.nodes.size(), State::New);
        std::vector<std::pair<std::size_t, std::size_t>> stack = {{0, 0}};
        states[0] = State::Open;
        while (!stack.empty()) {
            auto& [node, next] = stack.back();
            std::vector<Usage>& usages = out_.nodes[node].usages;
            if (next == usages.size()) {
                states[node] = State::Done;
                stack.pop_back();
                continue;
            }
            const std::size_t used = usages[next].node;
            if (states[used] == State::Open) {
                usages.erase(usages.begin() + static_cast<std::ptrdiff_t>(next));
                ++out_.brokenUsages;
                continue;
            }
            ++next;
            if (states[used] == State::New) {
                states[used] = State::Open;
                stack.push_back({used, 0});
            }
        }
    }

    /// Subfigures that nothing places are not shown; what they hold is not missing.
    void findUnused(const std::vector<bool>& isUsed) {
        std::vector<std::uint32_t> open;
        for (std::size_t i = 0; i < isUsed.size(); ++i) {
            const int type = text_.entities()[i].type;
            const bool isUnused = !isUsed[i] && (type == 308 || type == 320);
            if (isUnused) open.push_back(Text::numberOf(i));
        }
        std::set<std::uint32_t> seen(open.begin(), open.end());
        while (!open.empty()) {
            const std::uint32_t number = open.back();
            open.pop_back();
            out_.unused.push_back(number);
            for (const std::uint32_t part : partsOf(text_, *text_.find(number))) {
                if (seen.insert(part).second) open.push_back(part);
            }
        }
    }

    const Text& text_;
    double mm_;
    Structure out_;
    std::vector<std::uint32_t> sources_;  // number of the entity behind each node
    std::unordered_map<std::uint32_t, std::size_t> nodes_;
    std::vector<bool> isProduct_;  // by position of the entity
};

}  // namespace

double namedUnitMm(const Text& text) {
    const double length = unitLength(text);
    return length > 0.0 ? length : 1.0;
}

double unitMm(const Text& text) {
    const Value& scale = text.global(13);
    const bool is = scale.kind == Value::Kind::Number && scale.number > 0.0;
    return namedUnitMm(text) / (is ? scale.number : 1.0);
}

std::string nameOf(const Text& text, std::uint32_t number) {
    const Entity* const entity = text.find(number);
    if (!entity) return {};
    const std::vector<Value> values = text.values(*entity);
    // Properties stand last, behind their count.
    for (std::size_t count = 1; count + 1 < values.size(); ++count) {
        const Entity* const property = text.find(values[values.size() - count].pointer());
        if (!property || property->type != 406) break;
        if (values[values.size() - count - 1].pointer() != count) continue;
        for (std::size_t i = values.size() - count; i < values.size(); ++i) {
            const Entity* const named = text.find(values[i].pointer());
            if (!named || named->type != 406 || named->form != 15) continue;
            const std::vector<Value> name = text.values(*named);
            if (name.size() > 2 && !name[2].text.empty()) return name[2].text;
        }
    }
    return {};
}

Structure readStructure(const Text& text) {
    return StructureReader(text).read();
}

}  // namespace occt::iges
