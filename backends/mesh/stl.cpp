#include "backends/mesh/stl.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "backends/mesh/bodies.h"
#include "backends/mesh/build.h"
#include "backends/mesh/recognise.h"
#include "backends/mesh/text.h"
#include "backends/mesh/welder.h"

namespace mesh {
namespace {

static_assert(std::endian::native == std::endian::little, "floats are copied as they stand");

constexpr std::size_t kHeader = 80;
constexpr std::size_t kStart = kHeader + 4;
constexpr std::size_t kTriangle = 50;
constexpr std::size_t kNormal = 12;

using Corners = std::array<std::array<float, 3>, 3>;

/// Triangles of one solid on their way to bodies.
class Solid {
public:
    explicit Solid(std::size_t expected) : welder_(expected / 2 + 3) {
        triangles_.reserve(expected);
    }

    void add(const Corners& corners) {
        Triangle triangle{};
        for (std::size_t i = 0; i < 3; ++i) {
            triangle[i] = welder_.number(corners[i][0], corners[i][1], corners[i][2]);
        }
        triangles_.push_back(triangle);
    }

    /// Triangles of a binary file, one behind the other.
    void addBinary(const char* data, std::size_t count) {
        // Points are looked up some triangles after they were read, when memory has answered.
        constexpr std::size_t kAhead = 32;
        std::array<Welder<float>::Query, 3 * kAhead> queries;
        for (std::size_t begin = 0; begin < count; begin += kAhead) {
            const std::size_t size = std::min(kAhead, count - begin);
            for (std::size_t i = 0; i < size; ++i) {
                Corners corners;
                std::memcpy(&corners, data + (begin + i) * kTriangle + kNormal, sizeof corners);
                for (std::size_t c = 0; c < 3; ++c) {
                    queries[3 * i + c] =
                        welder_.prepare(corners[c][0], corners[c][1], corners[c][2]);
                }
            }
            for (std::size_t i = 0; i < size; ++i) {
                triangles_.push_back({welder_.number(queries[3 * i]),
                                      welder_.number(queries[3 * i + 1]),
                                      welder_.number(queries[3 * i + 2])});
            }
        }
    }

    std::size_t size() const { return triangles_.size(); }

    Definition finish(std::string name, Scene& scene) {
        Soup soup;
        soup.pointsMm.reserve(welder_.points().size());
        for (const auto& [x, y, z] : welder_.points()) soup.pointsMm.push_back({x, y, z});
        soup.triangles = std::move(triangles_);
        LeftOut leftOut;
        Definition part;
        part.name = std::move(name);
        part.bodies = splitBodies(std::move(soup), leftOut);
        addLeftOut(leftOut, scene);
        return part;
    }

private:
    Welder<float> welder_;
    std::vector<Triangle> triangles_;
};

std::uint64_t declaredTriangles(std::string_view bytes) {
    std::uint32_t count = 0;
    std::memcpy(&count, bytes.data() + kHeader, sizeof count);
    return count;
}

/// Whether the corners look like lengths rather than like any bits: most are 0 or between a
/// tiny number and a million kilometres. Any bits are so in two cases of five, nine hardly ever.
bool looksLikeLengths(std::string_view bytes) {
    const std::size_t triangles = std::min<std::size_t>((bytes.size() - kStart) / kTriangle, 64);
    std::size_t good = 0;
    for (std::size_t i = 0; i < triangles; ++i) {
        std::array<float, 9> numbers;
        std::memcpy(&numbers, bytes.data() + kStart + i * kTriangle + kNormal, sizeof numbers);
        good += std::all_of(numbers.begin(), numbers.end(), [](float x) {
            return x == 0.0F || (std::abs(x) > 1e-20F && std::abs(x) < 1e12F);
        });
    }
    return 2 * good > triangles;
}

Outcome readBinary(std::string_view bytes) {
    Scene scene;
    const std::uint64_t declared = declaredTriangles(bytes);
    const std::uint64_t present = (bytes.size() - kStart) / kTriangle;
    const std::uint64_t count = std::min(declared, present);
    scene.counts.triangles = {declared, count};
    scene.counts.meshes = {1, 1};
    Solid solid(count);
    solid.addBinary(bytes.data() + kStart, count);
    addShortfall(scene.counts.triangles, "triangle", scene);
    const std::uint64_t used = kStart + declared * kTriangle;
    if (bytes.size() > used) {
        scene.gaps.push_back(std::to_string(bytes.size() - used) + " bytes behind the " +
                             std::to_string(declared) + " declared triangles were not read.");
    }
    const std::string_view header = bytes.substr(0, kHeader);
    const std::string text = toUtf8(header.substr(0, header.find('\0')));
    const bool readable = std::all_of(text.begin(), text.end(),
                                      [](char c) { return static_cast<signed char>(c) >= 0; });
    if (!text.empty() && readable) scene.metadata.emplace_back("Header", text);
    Definition part = solid.finish({}, scene);
    scene.counts.vertices = {3 * declared, 3 * count};
    std::vector<Definition> parts;
    parts.push_back(std::move(part));
    return finished(std::move(scene), std::move(parts));
}

/// ASCII files: solids of facets of one loop of three vertices each.
class TextStl {
public:
    explicit TextStl(std::string_view bytes) : text_(bytes), bytes_(bytes) {}

    Outcome run() {
        std::string_view word = text_.word();
        while (!word.empty()) {
            if (sameWord(word, "solid")) {
                beginSolid();
            } else if (sameWord(word, "endsolid") || sameWord(word, "end")) {
                endSolid();
            } else if (sameWord(word, "facet")) {
                readFacet();
            } else if (sameWord(word, "color")) {
                text_.skipLine();
            } else {
                isDamaged();
            }
            word = text_.word();
        }
        if (open_) {
            cut_ = true;
            endSolid();
        }
        if (cut_) scene_.gaps.push_back("The text ends inside a solid.");
        if (damaged_ > 0) {
            scene_.gaps.push_back(counted(damaged_, "facet") + " not read, the first in line " +
                                  std::to_string(text_.lineOf(firstDamage_)) + ".");
        }
        auto& counts = scene_.counts;
        counts.vertices = {3 * counts.triangles.declared, 3 * counts.triangles.read};
        counts.meshes = {parts_.size(), parts_.size()};
        return finished(std::move(scene_), std::move(parts_));
    }

private:
    void beginSolid() {
        if (open_) endSolid();
        name_ = toUtf8(text_.restOfLine());
        begin();
    }

    void begin() {
        // A facet takes a hundred characters at least.
        solid_.emplace(std::min<std::size_t>((bytes_.size() - text_.offset()) / 200, 1U << 16));
        open_ = true;
    }

    void endSolid() {
        text_.skipLine();
        if (!open_) return;
        open_ = false;
        parts_.push_back(solid_->finish(std::move(name_), scene_));
        name_.clear();
        solid_.reset();
    }

    void readFacet() {
        if (!open_) begin();
        ++scene_.counts.triangles.declared;
        Corners corners;
        // The normal says nothing that the corners don't; many writers leave it out.
        std::string_view word = text_.word();
        while (!word.empty() && !sameWord(word, "loop")) {
            if (isKeyword(word)) return isDamaged();
            word = text_.word();
        }
        for (auto& corner : corners) {
            if (!sameWord(text_.word(), "vertex")) return isDamaged();
            for (float& coordinate : corner) {
                if (!parseReal(text_.word(), coordinate)) return isDamaged();
            }
        }
        if (!sameWord(text_.word(), "endloop")) return isDamaged();
        if (!sameWord(text_.word(), "endfacet")) return isDamaged();
        solid_->add(corners);
        ++scene_.counts.triangles.read;
    }

    static bool isKeyword(std::string_view word) {
        return sameWord(word, "vertex") || sameWord(word, "endfacet") || sameWord(word, "endsolid");
    }

    /// Goes to the end of the facet that can't be read.
    void isDamaged() {
        if (damaged_++ == 0) firstDamage_ = text_.offset() > 0 ? text_.offset() - 1 : 0;
        for (;;) {
            const std::string_view word = text_.word();
            if (word.empty()) {
                cut_ = cut_ || open_;
                return;
            }
            if (sameWord(word, "endfacet")) return;
            if (sameWord(word, "endsolid")) return endSolid();
        }
    }

    TextReader text_;
    std::string_view bytes_;
    Scene scene_;
    std::vector<Definition> parts_;
    std::optional<Solid> solid_;
    std::string name_;
    bool open_ = false;
    bool cut_ = false;
    std::size_t damaged_ = 0;
    std::size_t firstDamage_ = 0;
};

}  // namespace

Outcome readStl(std::string_view bytes) {
    if (isBinaryStl(bytes)) return readBinary(bytes);
    if (isTextStl(bytes)) return TextStl(bytes).run();
    if (bytes.size() < kStart + kTriangle) {
        return refused("not-this-format",
                       "is no STL file: it is neither text that begins with "
                       "\"solid\" nor long enough for a triangle.");
    }
    if (!looksLikeLengths(bytes)) {
        return refused("not-this-format",
                       "is no STL file: it is not text that begins with \"solid\", its size does "
                       "not fit its number of triangles, and their corners are no lengths.");
    }
    return readBinary(bytes);
}

}  // namespace mesh
