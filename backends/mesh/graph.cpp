#include "backends/mesh/graph.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "backends/mesh/bodies.h"

namespace mesh {
namespace {

/// Rows of a linear map.
using Linear = std::array<double, 9>;
constexpr Linear kSame = {1, 0, 0, 0, 1, 0, 0, 0, 1};

Linear linearOf(const Matrix& matrix) {
    Linear out;
    std::copy_n(matrix.begin(), 9, out.begin());
    return out;
}

Linear product(const Linear& a, const Linear& b) {
    Linear out{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t k = 0; k < 3; ++k) {
                out[3 * row + column] += a[3 * row + k] * b[3 * k + column];
            }
        }
    }
    return out;
}

Point applied(const Linear& map, const Point& point) {
    Point out{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t k = 0; k < 3; ++k) out[row] += map[3 * row + k] * point[k];
    }
    return out;
}

double determinant(const Linear& m) {
    return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
           m[2] * (m[3] * m[7] - m[4] * m[6]);
}

Linear transposed(const Linear& m) {
    return {m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]};
}

/// Turns columns into a right-handed frame of unit vectors, the first ones first; the identity
/// when they lie in a plane.
Linear frameOf(const Linear& map) {
    std::array<Point, 3> column;
    for (std::size_t i = 0; i < 3; ++i) column[i] = {map[i], map[3 + i], map[6 + i]};
    for (std::size_t i = 0; i < 3; ++i) {
        const double before = std::hypot(column[i][0], column[i][1], column[i][2]);
        for (std::size_t k = 0; k < i; ++k) {
            const double along = column[i][0] * column[k][0] + column[i][1] * column[k][1] +
                                 column[i][2] * column[k][2];
            for (std::size_t c = 0; c < 3; ++c) column[i][c] -= along * column[k][c];
        }
        const double length = std::hypot(column[i][0], column[i][1], column[i][2]);
        if (!(length > 1e-9 * before)) return kSame;
        for (double& c : column[i]) c /= length;
    }
    Linear out;
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t row = 0; row < 3; ++row) out[3 * row + i] = column[i][row];
    }
    if (determinant(out) < 0.0) {
        for (double& c : out) c = -c;
    }
    return out;
}

// Formats write placements in single precision.
constexpr double kNoise = 2e-6;

/// A map as a rotation after the rest: what must go into the points.
struct Parts {
    Linear rotation = kSame;
    Linear rest = kSame;
};

Parts takeApart(const Linear& map) {
    if (map == kSame) return {};
    Parts parts;
    parts.rotation = frameOf(map);
    parts.rest = product(transposed(parts.rotation), map);
    const double size = std::cbrt(std::abs(determinant(map)));
    const double sign = determinant(map) < 0.0 ? -1.0 : 1.0;
    double off = 0.0;
    for (std::size_t i = 0; i < 9; ++i) {
        off = std::max(off, std::abs(parts.rest[i] - sign * size * kSame[i]));
    }
    if (size > 0.0 && off <= kNoise * size) {
        const double scale = std::abs(size - 1.0) <= kNoise ? sign : sign * size;
        for (std::size_t i = 0; i < 9; ++i) parts.rest[i] = scale * kSame[i] + 0.0;
    }
    return parts;
}

/// A definition with what its points go through.
struct Variant {
    std::uint32_t definition = 0;
    Linear rest = kSame;
    auto operator<=>(const Variant&) const = default;
};

class Placing {
public:
    explicit Placing(Scene scene) : in_(std::move(scene)) {}

    Outcome run(const Matrix& rootPlacement) {
        if (in_.definitions.empty()) return {std::move(in_), std::nullopt};
        cutCycles();
        declaredDefinitions_ = in_.definitions.size();
        for (const Definition& d : in_.definitions) declaredUsages_ += d.usages.size();
        // Nothing stands above the root that could carry its translation.
        moveRoot(rootPlacement);
        out_.root = variant({in_.root, kSame});
        for (std::size_t i = 0; i < variants_.size(); ++i) {
            addUsages(i);
            const bool grows = variants_.size() > declaredDefinitions_ + kMostMore ||
                               usages_ > declaredUsages_ + kMostMore;
            if (grows || points_ > kMostPoints) {
                return tooLarge();
            }
        }
        for (std::size_t i = 0; i < variants_.size(); ++i) addBodies(i);
        sayWhatIsMissing();
        in_.definitions = std::move(out_.definitions);
        in_.root = out_.root;
        return {std::move(in_), std::nullopt};
    }

private:
    static Outcome tooLarge() {
        return {{},
                Refusal{"too-large",
                        "is too large: its parts are used at more sizes than can be told apart."}};
    }

    /// Leaves out usages that lead back, found without recursion.
    void cutCycles() {
        enum class State : std::uint8_t { New, Open, Done };
        std::vector<State> states(in_.definitions.size(), State::New);
        struct Step {
            std::uint32_t definition;
            std::size_t next;
        };
        std::vector<Step> path = {{in_.root, 0}};
        states[in_.root] = State::Open;
        while (!path.empty()) {
            auto& usages = in_.definitions[path.back().definition].usages;
            if (path.back().next == usages.size()) {
                states[path.back().definition] = State::Done;
                std::erase_if(usages, [](const Usage& u) { return u.definition == kCut; });
                path.pop_back();
                continue;
            }
            const std::uint32_t child = usages[path.back().next].definition;
            if (states[child] == State::Open) {
                usages[path.back().next].definition = kCut;
                ++circular_;
            }
            ++path.back().next;
            if (states[child] != State::New) continue;
            states[child] = State::Open;
            path.push_back({child, 0});
        }
    }

    void moveRoot(const Matrix& placement) {
        if (placement == kIdentity) return;
        if (!isGood(placement)) {
            ++misplaced_;
            return;
        }
        Definition& root = in_.definitions[in_.root];
        for (Usage& usage : root.usages)
            usage.placement = mesh::product(placement, usage.placement);
        const Linear map = linearOf(placement);
        for (Body& body : root.bodies) {
            transform(body, map);
            for (Point& point : body.pointsMm) {
                for (std::size_t i = 0; i < 3; ++i) point[i] += placement[9 + i];
            }
        }
    }

    static void transform(Body& body, const Linear& map) {
        for (Point& point : body.pointsMm) point = applied(map, point);
        if (determinant(map) >= 0.0) return;
        for (Triangle& triangle : body.triangles) std::swap(triangle[1], triangle[2]);
    }

    std::uint32_t variant(const Variant& wanted) {
        const auto fresh = static_cast<std::uint32_t>(variants_.size());
        const auto [found, isNew] = numbers_.try_emplace(wanted, fresh);
        if (isNew) {
            variants_.push_back(wanted);
            const Definition& from = in_.definitions[wanted.definition];
            out_.definitions.push_back({from.name, {}, {}, from.metadata});
            for (const Body& body : from.bodies) points_ += body.pointsMm.size();
            ++uses_[wanted.definition];
        }
        return found->second;
    }

    void addUsages(std::size_t number) {
        const Variant above = variants_[number];
        for (const Usage& usage : in_.definitions[above.definition].usages) {
            const Parts parts = takeApart(product(above.rest, linearOf(usage.placement)));
            const Point offset =
                applied(above.rest, {usage.placement[9], usage.placement[10], usage.placement[11]});
            if (!isGood(usage.placement) || !isGood(parts.rest) || !isGood(offset)) {
                ++misplaced_;
                continue;
            }
            ++usages_;
            Usage placed{variant({usage.definition, parts.rest}), {}};
            std::copy(parts.rotation.begin(), parts.rotation.end(), placed.placement.begin());
            std::copy(offset.begin(), offset.end(), placed.placement.begin() + 9);
            out_.definitions[number].usages.push_back(placed);
        }
    }

    /// The last variant of a definition takes its bodies, the others copy them.
    void addBodies(std::size_t number) {
        const Variant& from = variants_[number];
        std::vector<Body>& source = in_.definitions[from.definition].bodies;
        std::vector<Body>& bodies = out_.definitions[number].bodies;
        if (--uses_[from.definition] == 0) {
            bodies = std::move(source);
        } else {
            bodies = source;
        }
        if (from.rest == kSame) return;
        for (Body& body : bodies) {
            transform(body, from.rest);
            const bool good =
                std::all_of(body.pointsMm.begin(), body.pointsMm.end(), [](const Point& point) {
                    return std::all_of(point.begin(), point.end(), [](double x) {
                        return std::abs(x) <= kLargestCoordinateMm;
                    });
                });
            if (!good) {
                ++absurdBodies_;
                body.triangles.clear();
            }
        }
        std::erase_if(bodies, [](const Body& body) { return body.triangles.empty(); });
    }

    void say(std::uint64_t count, const char* one, const char* many, const std::string& what) {
        if (count == 0) return;
        in_.gaps.push_back(std::to_string(count) + (count == 1 ? one : many) + what);
    }

    void sayWhatIsMissing() {
        say(circular_, " usage leads", " usages lead",
            " back into the assembly that it is part of and was left out.");
        say(misplaced_, " usage has", " usages have",
            " a placement that is no numbers and was left out.");
        say(absurdBodies_, " body was", " bodies were",
            " left out: scaled, their coordinates are no lengths.");
    }

    template <typename Numbers>
    static bool isGood(const Numbers& numbers) {
        return std::all_of(numbers.begin(), numbers.end(),
                           [](double x) { return std::abs(x) <= kLargest; });
    }

    static constexpr double kLargest = 1e15;
    static constexpr std::uint32_t kCut = ~0U;

    Scene in_;
    Scene out_;
    std::vector<Variant> variants_;
    std::map<Variant, std::uint32_t> numbers_;
    std::map<std::uint32_t, std::size_t> uses_;
    std::uint64_t points_ = 0;
    std::size_t usages_ = 0;
    std::size_t declaredDefinitions_ = 0;
    std::size_t declaredUsages_ = 0;
    std::uint64_t circular_ = 0;
    std::uint64_t misplaced_ = 0;
    std::uint64_t absurdBodies_ = 0;
};

}  // namespace

Matrix product(const Matrix& outer, const Matrix& inner) {
    const Linear map = product(linearOf(outer), linearOf(inner));
    const Point offset = applied(linearOf(outer), {inner[9], inner[10], inner[11]});
    Matrix out{};
    std::copy(map.begin(), map.end(), out.begin());
    for (std::size_t i = 0; i < 3; ++i) out[9 + i] = offset[i] + outer[9 + i];
    return out;
}

Outcome placed(Scene scene, const Matrix& rootPlacement) {
    return Placing(std::move(scene)).run(rootPlacement);
}

}  // namespace mesh
