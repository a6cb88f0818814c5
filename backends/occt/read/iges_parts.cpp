#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "backends/occt/read/iges_structure.h"

namespace occt::iges {
namespace {

/// Walks over the parameters of one entity and keeps what points to others.
class Pointers {
public:
    Pointers(const Text& text, const Entity& entity) : text_(text), values_(text.values(entity)) {}

    std::size_t count(std::size_t at) const {
        const std::uint32_t value = at < values_.size() ? values_[at].pointer() : 0;
        return std::min<std::size_t>(value, values_.size());
    }

    void take(std::size_t at) {
        const std::uint32_t number = at < values_.size() ? values_[at].pointer() : 0;
        if (text_.find(number)) out_.push_back(number);
    }

    /// `count` pointers from `first` on, `step` apart.
    void takeList(std::size_t first, std::size_t count, std::size_t step = 1) {
        for (std::size_t i = 0; i < count; ++i) take(first + i * step);
    }

    std::vector<std::uint32_t> out() { return std::move(out_); }

private:
    const Text& text_;
    std::vector<Value> values_;
    std::vector<std::uint32_t> out_;
};

/// Curves of a boundary: each with the curves in parameter space behind it.
void takeBoundary(Pointers& pointers) {
    pointers.take(3);
    std::size_t at = 5;
    for (std::size_t i = pointers.count(4); i > 0; --i) {
        const std::size_t more = pointers.count(at + 2);
        pointers.take(at);
        pointers.takeList(at + 3, more);
        at += 3 + more;
    }
}

/// Edges of a loop: each with its curves in parameter space.
void takeLoop(Pointers& pointers) {
    std::size_t at = 2;
    for (std::size_t i = pointers.count(1); i > 0; --i) {
        const std::size_t more = pointers.count(at + 4);
        pointers.take(at + 1);
        pointers.takeList(at + 6, more, 2);
        at += 5 + 2 * more;
    }
}

void takeEdges(Pointers& pointers) {
    for (std::size_t i = 0; i < pointers.count(1); ++i) {
        pointers.take(2 + 5 * i);
        pointers.take(3 + 5 * i);
        pointers.take(5 + 5 * i);
    }
}

void takeParts(const Entity& entity, Pointers& pointers) {
    switch (entity.type) {
        case 102: pointers.takeList(2, pointers.count(1)); break;
        case 108:
        case 140: pointers.take(5); break;
        case 118:
        case 120: pointers.takeList(1, 2); break;
        case 122:
        case 130:
        case 162:
        case 164:
        case 190:
        case 192:
        case 194:
        case 196:
        case 198:
        case 408:
        case 412:
        case 414:
        case 420:
        case 430: pointers.take(1); break;
        case 141: takeBoundary(pointers); break;
        case 142: pointers.takeList(2, 3); break;
        case 143:
            pointers.take(2);
            pointers.takeList(4, pointers.count(3));
            break;
        case 144:
            pointers.take(1);
            pointers.takeList(4, 1 + pointers.count(3));
            break;
        case 180:
        case 184: pointers.takeList(2, pointers.count(1)); break;
        case 186:
            pointers.take(1);
            pointers.takeList(4, pointers.count(3), 2);
            break;
        case 308:
        case 320: pointers.takeList(4, pointers.count(3)); break;
        case 402: pointers.takeList(2, pointers.count(1)); break;
        case 504: takeEdges(pointers); break;
        case 508: takeLoop(pointers); break;
        case 510:
            pointers.take(1);
            pointers.takeList(4, pointers.count(2));
            break;
        case 514: pointers.takeList(2, pointers.count(1), 2); break;
        default: break;
    }
}

bool isIn(int type, std::initializer_list<int> types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

}  // namespace

bool isGroup(const Entity& entity) {
    return entity.type == 402 && isIn(entity.form, {1, 7, 14, 15});
}

std::vector<std::uint32_t> partsOf(const Text& text, const Entity& entity) {
    // Other associations list what they speak of, not what they consist of.
    if (entity.type == 402 && !isGroup(entity)) return {};
    Pointers pointers(text, entity);
    takeParts(entity, pointers);
    return pointers.out();
}

Kind kindOf(const Entity& entity) {
    const int type = entity.type;
    if (type == 186) return Kind::Solid;
    if (type == 514) return Kind::Shell;
    if (isIn(type, {143, 144, 510})) return Kind::Face;
    if (isIn(type, {114, 118, 120, 122, 128, 140, 190, 192, 194, 196, 198})) return Kind::Surface;
    // A plane without a boundary is no body.
    if (type == 108) return entity.form == 0 ? Kind::None : Kind::Surface;
    // Of the copious data, what is no drawing.
    if (type == 106) {
        return isIn(entity.form, {1, 2, 3, 11, 12, 13, 63}) ? Kind::Curve : Kind::None;
    }
    if (isIn(type, {100, 102, 104, 110, 112, 126, 130})) return Kind::Curve;
    if (type == 116) return Kind::Point;
    if ((type >= 150 && type <= 168) || type == 180) return Kind::Unknown;
    return Kind::None;
}

}  // namespace occt::iges
