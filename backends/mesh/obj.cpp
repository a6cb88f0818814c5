#include "backends/mesh/obj.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "backends/mesh/bodies.h"
#include "backends/mesh/build.h"
#include "backends/mesh/polygon.h"
#include "backends/mesh/text.h"
#include "backends/mesh/welder.h"

namespace mesh {
namespace {

constexpr std::string_view kCurved[] = {"curv", "curv2", "surf", "vp"};

bool isAmong(std::string_view word, std::span<const std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// A face's corners stand one behind the other in a list of all corners.
struct Face {
    std::size_t firstCorner = 0;
    std::uint32_t corners = 0;
    std::uint32_t object = 0;
    std::uint32_t group = 0;
    std::size_t offset = 0;
};

/// Names in the order in which they first come.
class Names {
public:
    std::uint32_t number(const std::string& name) {
        const auto fresh = static_cast<std::uint32_t>(names_.size());
        const auto [found, isNew] = numbers_.try_emplace(name, fresh);
        if (isNew) names_.push_back(name);
        return found->second;
    }
    const std::string& name(std::uint32_t number) const { return names_[number]; }
    std::size_t size() const { return names_.size(); }

private:
    std::vector<std::string> names_;
    std::unordered_map<std::string, std::uint32_t> numbers_;
};

class ObjReader {
public:
    explicit ObjReader(std::string_view bytes) : text_(bytes) {}

    Outcome run() {
        while (!text_.atEnd()) readStatement();
        resolve();
        std::vector<Definition> parts =
            hasObjects_ ? partsBy(&Face::object, objects_) : partsBy(&Face::group, groups_);
        sayWhatIsMissing();
        if (scene_.counts.triangles.declared == 0 && lines_ + points_ > 0) {
            return refused("empty", "holds points and lines only, no faces.");
        }
        return finished(std::move(scene_), std::move(parts));
    }

private:
    void readStatement() {
        const std::size_t offset = text_.offset();
        const std::string_view rest = text_.rest();
        const std::string_view word = text_.wordInLine();
        if (word.starts_with('#')) {
            text_.skipLine();
            return readRemark(rest.substr(0, text_.offset() - offset));
        }
        isHeader_ = isHeader_ && word.empty();
        if (word == "v") {
            readVertex(offset);
        } else if (word == "f" || word == "fo") {
            readFace(offset);
        } else if (word == "o") {
            object_ = objects_.number(toUtf8(text_.restOfLine()));
            hasObjects_ = true;
            return;
        } else if (word == "g") {
            group_ = groups_.number(toUtf8(text_.restOfLine()));
            return;
        } else if (word == "l") {
            ++lines_;
        } else if (word == "p") {
            ++points_;
        } else if (isAmong(word, kCurved)) {
            ++curved_;
        }
        skipStatement();
    }

    /// Remarks before the first statement say where the file comes from; those behind it are about
    /// its parts.
    void readRemark(std::string_view line) {
        constexpr std::size_t mostLines = 16;
        const std::size_t begin = line.find_first_not_of("# \t");
        if (!isHeader_ || begin == line.npos || scene_.metadata.size() >= mostLines) return;
        const std::string text = toUtf8(line.substr(begin));
        if (!text.empty()) scene_.metadata.emplace_back("Comment", text);
    }

    /// The next word of a statement, which a backslash leads on to the next line.
    std::string_view nextWord() {
        std::string_view word = text_.wordInLine();
        while (word == "\\") {
            text_.skipLine();
            word = text_.wordInLine();
        }
        return word.starts_with('#') ? std::string_view() : word;
    }

    void skipStatement() {
        while (text_.restOfLine().ends_with('\\')) {
        }
    }

    void readVertex(std::size_t offset) {
        Point point{};
        for (double& coordinate : point) {
            if (parseReal(nextWord(), coordinate)) continue;
            // Its number is taken all the same, or all faces behind it would be others.
            coordinate = std::numeric_limits<double>::quiet_NaN();
            noteDamage(damagedVertices_, offset);
        }
        if (!std::isnan(point[0] + point[1] + point[2])) ++scene_.counts.vertices.read;
        ++scene_.counts.vertices.declared;
        vertices_.push_back(welder_.number(point[0], point[1], point[2]));
    }

    void readFace(std::size_t offset) {
        Face face{corners_.size(), 0, object_, group_, offset};
        bool good = true;
        for (std::string_view word = nextWord(); !word.empty(); word = nextWord()) {
            std::int64_t number = 0;
            good = parseInteger(word.substr(0, word.find('/')), number) && good;
            // Counted back from the newest vertex.
            if (number < 0) number += static_cast<std::int64_t>(vertices_.size()) + 1;
            good = good && number > 0 && number <= std::numeric_limits<std::uint32_t>::max();
            corners_.push_back(good ? static_cast<std::uint32_t>(number - 1) : 0);
            ++face.corners;
        }
        scene_.counts.triangles.declared += face.corners < 3 ? 1 : face.corners - 2;
        if (!good || face.corners < 3) {
            corners_.resize(face.firstCorner);
            noteDamage(damagedFaces_, offset);
            return;
        }
        faces_.push_back(face);
    }

    /// Turns numbers of vertices into those of welded points; drops faces that name none.
    void resolve() {
        std::erase_if(faces_, [this](const Face& face) {
            for (std::size_t i = 0; i < face.corners; ++i) {
                std::uint32_t& corner = corners_[face.firstCorner + i];
                if (corner >= vertices_.size()) {
                    noteDamage(damagedFaces_, face.offset);
                    return true;
                }
                corner = vertices_[corner];
            }
            return false;
        });
    }

    std::vector<Definition> partsBy(std::uint32_t Face::*key, const Names& names) {
        std::stable_sort(faces_.begin(), faces_.end(),
                         [key](const Face& a, const Face& b) { return a.*key < b.*key; });
        std::vector<Definition> parts;
        place_.assign(welder_.points().size(), kNowhere);
        for (auto face = faces_.begin(); face != faces_.end();) {
            const std::uint32_t number = (*face).*key;
            Soup soup;
            used_.clear();
            for (; face != faces_.end() && (*face).*key == number; ++face) addFace(*face, soup);
            for (const std::uint32_t point : used_) place_[point] = kNowhere;
            LeftOut leftOut;
            Definition part;
            part.name = names.name(number);
            part.bodies = splitBodies(std::move(soup), leftOut);
            addLeftOut(leftOut, scene_);
            parts.push_back(std::move(part));
        }
        scene_.counts.meshes = {parts.size(), parts.size()};
        return parts;
    }

    void addFace(const Face& face, Soup& soup) {
        std::vector<std::uint32_t> local;
        for (std::size_t i = 0; i < face.corners; ++i) {
            const std::uint32_t point = corners_[face.firstCorner + i];
            if (place_[point] == kNowhere) {
                place_[point] = static_cast<std::uint32_t>(soup.pointsMm.size());
                soup.pointsMm.push_back(welder_.points()[point]);
                used_.push_back(point);
            }
            local.push_back(place_[point]);
        }
        const std::string& group = groups_.name(face.group);
        if (hasObjects_ && (soup.runs.empty() || soup.runs.back().name != group)) {
            soup.runs.push_back({soup.triangles.size(), group});
        }
        addPolygon(local, soup.pointsMm, soup.triangles);
        scene_.counts.triangles.read += face.corners - 2;
    }

    struct Damage {
        std::size_t count = 0;
        std::size_t firstOffset = 0;
    };
    static void noteDamage(Damage& damage, std::size_t offset) {
        if (damage.count++ == 0 || offset < damage.firstOffset) damage.firstOffset = offset;
    }

    void sayDamage(const Damage& damage, const char* noun) {
        if (damage.count == 0) return;
        scene_.gaps.push_back(counted(damage.count, noun) + " not read, the first in line " +
                              std::to_string(text_.lineOf(damage.firstOffset)) + ".");
    }

    void sayWhatIsMissing() {
        sayDamage(damagedFaces_, "face");
        sayDamage(damagedVertices_, "coordinate");
        if (curved_ > 0) {
            scene_.gaps.push_back(counted(curved_, "statement") +
                                  " not read: curves and surfaces that are no polygons.");
        }
    }

    static constexpr std::uint32_t kNowhere = ~0U;

    TextReader text_;
    Scene scene_;
    Welder<double> welder_{0};
    std::vector<std::uint32_t> vertices_;  ///< number of the welded point
    std::vector<std::uint32_t> corners_;
    std::vector<Face> faces_;
    Names objects_;
    Names groups_;
    bool hasObjects_ = false;
    bool isHeader_ = true;
    std::uint32_t object_ = objects_.number({});
    std::uint32_t group_ = groups_.number({});
    std::vector<std::uint32_t> place_;
    std::vector<std::uint32_t> used_;
    Damage damagedFaces_;
    Damage damagedVertices_;
    std::size_t lines_ = 0;
    std::size_t points_ = 0;
    std::size_t curved_ = 0;
};

}  // namespace

Outcome readObj(std::string_view bytes) {
    Outcome outcome = ObjReader(bytes).run();
    const bool nothing = outcome.refusal && outcome.refusal->code == "empty";
    if (nothing && bytes.find('\0') != bytes.npos) {
        return refused("not-this-format", "is no OBJ file: it is no text.");
    }
    return outcome;
}

}  // namespace mesh
