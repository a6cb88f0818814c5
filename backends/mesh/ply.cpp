#include "backends/mesh/ply.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "backends/mesh/bodies.h"
#include "backends/mesh/build.h"
#include "backends/mesh/ply_header.h"
#include "backends/mesh/polygon.h"
#include "backends/mesh/recognise.h"
#include "backends/mesh/text.h"

namespace mesh {
namespace {

/// Values of a file's data, one after the other.
class Values {
public:
    Values(std::string_view bytes, const PlyHeader& header)
        : data_(bytes.substr(header.length)),
          text_(bytes.substr(header.length)),
          linesBefore_(header.lines),
          encoding_(header.encoding) {}

    bool isText() const { return encoding_ == PlyHeader::Encoding::Text; }

    /// False at the end of the data and for a word that is no number.
    bool next(PlyType type, double& value) {
        return isText() ? nextWord(type, value) : nextBinary(type, value);
    }

    /// Goes on to the next record. Text has one in a line; true when more stands there than was
    /// read.
    bool endRecord() {
        if (!isText()) return false;
        const bool surplus = !text_.wordInLine().empty();
        text_.skipLine();
        return surplus;
    }

    std::size_t left() const { return isText() ? text_.rest().size() : data_.size() - at_; }

    /// Whether anything but blanks is left.
    bool hasMore() const {
        if (!isText()) return at_ < data_.size();
        TextReader copy = text_;
        return !copy.word().empty();
    }

    std::string place() const {
        if (!isText()) return "byte " + std::to_string(at_) + " of the data";
        return "line " + std::to_string(linesBefore_ + text_.lineOf(text_.offset()));
    }

private:
    bool nextWord(PlyType type, double& value) {
        const std::string_view word = text_.word();
        if (type != PlyType::Float) return parseReal(word, value);
        // Read as what it was written from, so that text and binary files give the same points.
        float single = 0.0F;
        if (!parseReal(word, single)) return false;
        value = static_cast<double>(single);
        return true;
    }

    bool nextBinary(PlyType type, double& value) {
        const std::size_t size = sizeOf(type);
        if (data_.size() - at_ < size) return false;
        char raw[8] = {};
        std::memcpy(raw, data_.data() + at_, size);
        if (encoding_ == PlyHeader::Encoding::BigEndian) std::reverse(raw, raw + size);
        at_ += size;
        value = decoded(type, raw);
        return true;
    }

    template <typename Number>
    static double as(const char* raw) {
        Number number;
        std::memcpy(&number, raw, sizeof number);
        return static_cast<double>(number);
    }
    static double decoded(PlyType type, const char* raw) {
        static_assert(std::endian::native == std::endian::little);
        switch (type) {
            case PlyType::Int8: return as<std::int8_t>(raw);
            case PlyType::UInt8: return as<std::uint8_t>(raw);
            case PlyType::Int16: return as<std::int16_t>(raw);
            case PlyType::UInt16: return as<std::uint16_t>(raw);
            case PlyType::Int32: return as<std::int32_t>(raw);
            case PlyType::UInt32: return as<std::uint32_t>(raw);
            case PlyType::Float: return as<float>(raw);
            default: return as<double>(raw);
        }
    }

    std::string_view data_;
    std::size_t at_ = 0;
    TextReader text_;
    std::size_t linesBefore_;
    PlyHeader::Encoding encoding_;
};

class PlyReader {
public:
    PlyReader(std::string_view bytes, PlyHeader header)
        : header_(std::move(header)), values_(bytes, header_) {}

    Outcome run() {
        scene_.metadata = std::move(header_.metadata);
        for (const PlyElement& element : header_.elements) {
            declare(element);
            if (!ended_) readElement(element);
        }
        makeTriangles();
        sayWhatIsMissing();
        LeftOut leftOut;
        std::vector<Definition> parts(1);
        parts[0].bodies = splitBodies(welded(soup_), leftOut);
        addLeftOut(leftOut, scene_);
        scene_.counts.meshes = {1, 1};
        if (scene_.counts.triangles.declared == 0 && scene_.counts.vertices.read > 0) {
            return refused("empty", "holds points only, no faces.");
        }
        return finished(std::move(scene_), std::move(parts));
    }

private:
    enum class Kind { Other, Vertex, Face, Strip };

    static Kind kindOf(const PlyElement& element) {
        if (element.name == "vertex") return Kind::Vertex;
        if (element.name == "face") return Kind::Face;
        return element.name == "tristrips" ? Kind::Strip : Kind::Other;
    }

    void declare(const PlyElement& element) {
        if (kindOf(element) == Kind::Vertex) scene_.counts.vertices.declared += element.count;
        if (kindOf(element) == Kind::Face) declaredFaces_ += element.count;
    }

    void readElement(const PlyElement& element) {
        // Records without a byte take time by what is promised alone.
        if (element.properties.empty()) return;
        const Kind kind = kindOf(element);
        const std::array<std::size_t, 3> axes = {element.find("x"), element.find("y"),
                                                 element.find("z")};
        const std::size_t list = element.find("vertex_indices", "vertex_index");
        for (std::uint64_t i = 0; i < element.count; ++i) {
            Point point{};
            row_.clear();
            for (std::size_t p = 0; p < element.properties.size(); ++p) {
                double value = 0.0;
                if (!readProperty(element.properties[p], kind != Kind::Other && p == list, value)) {
                    return end(element, i);
                }
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    if (p == axes[axis]) point[axis] = value;
                }
            }
            if (values_.endRecord()) ++longLines_;
            if (kind == Kind::Vertex) soup_.pointsMm.push_back(point);
            if (kind == Kind::Face) addFace();
            if (kind == Kind::Strip) addStrip();
        }
    }

    void end(const PlyElement& element, std::uint64_t read) {
        ended_ = true;
        if (kindOf(element) == Kind::Vertex || kindOf(element) == Kind::Face) {
            const std::string what = values_.hasMore() ? " cannot be read." : " is the end.";
            place_ = "The data of element \"" + toUtf8(element.name) + "\" number " +
                     std::to_string(read + 1) + " break off: " + values_.place() + what;
        }
    }

    /// Reads one property; a wanted list goes to `row_`.
    bool readProperty(const PlyProperty& property, bool wanted, double& value) {
        if (!property.isList) return values_.next(property.type, value);
        double count = 0.0;
        if (!values_.next(property.countType, count)) return false;
        if (!(count >= 0.0) || count > static_cast<double>(values_.left())) return false;
        for (auto i = static_cast<std::uint64_t>(count); i > 0; --i) {
            double item = 0.0;
            if (!values_.next(property.type, item)) return false;
            if (wanted) row_.push_back(item);
        }
        return true;
    }

    void addFace() {
        faceSizes_.push_back(row_.size());
        corners_.insert(corners_.end(), row_.begin(), row_.end());
    }

    /// A strip ends at a negative number and another one begins.
    void addStrip() {
        std::size_t begin = 0;
        for (std::size_t i = 0; i < row_.size(); ++i) {
            if (row_[i] < 0.0) {
                begin = i + 1;
            } else if (i >= begin + 2) {
                const bool odd = (i - begin) % 2 != 0;
                ++declaredFaces_;
                faceSizes_.push_back(3);
                corners_.insert(corners_.end(),
                                {row_[i - 2], row_[odd ? i : i - 1], row_[odd ? i - 1 : i]});
            }
        }
    }

    /// Vertices may stand behind the faces, so corners are looked up when all are there.
    void makeTriangles() {
        const auto points = static_cast<double>(soup_.pointsMm.size());
        std::size_t at = 0;
        std::vector<std::uint32_t> polygon;
        for (const std::size_t size : faceSizes_) {
            polygon.clear();
            bool good = size >= 3;
            for (const double corner : std::span(corners_).subspan(at, size)) {
                good = good && corner >= 0.0 && corner < points && corner == std::floor(corner);
                if (good) polygon.push_back(static_cast<std::uint32_t>(corner));
            }
            at += size;
            scene_.counts.triangles.declared += size < 3 ? 1 : size - 2;
            if (!good) {
                ++damagedFaces_;
                continue;
            }
            addPolygon(polygon, soup_.pointsMm, soup_.triangles);
            scene_.counts.triangles.read += size - 2;
        }
        scene_.counts.vertices.read = soup_.pointsMm.size();
        // Of faces that are not there nobody knows how many triangles they were.
        scene_.counts.triangles.declared += declaredFaces_ - faceSizes_.size();
    }

    void sayWhatIsMissing() {
        addShortfall(scene_.counts.vertices, "point", scene_);
        addShortfall({declaredFaces_, faceSizes_.size()}, "face", scene_);
        if (!place_.empty()) scene_.gaps.push_back(place_);
        if (damagedFaces_ > 0) {
            scene_.gaps.push_back(counted(damagedFaces_, "face") +
                                  " not read: corners are missing or name no vertex.");
        }
        if (longLines_ > 0) {
            scene_.warnings.push_back(
                counted(longLines_, "line") +
                " longer than the header declares; their ends were not read.");
        }
        if (!ended_ && values_.hasMore()) {
            scene_.gaps.push_back("Behind the declared elements stand more data, from " +
                                  values_.place() + " on.");
        }
    }

    PlyHeader header_;
    Values values_;
    Scene scene_;
    Soup soup_;
    std::vector<double> row_;
    std::vector<double> corners_;
    std::vector<std::size_t> faceSizes_;
    std::uint64_t declaredFaces_ = 0;
    std::size_t damagedFaces_ = 0;
    std::size_t longLines_ = 0;
    bool ended_ = false;
    std::string place_;
};

}  // namespace

Outcome readPly(std::string_view bytes) {
    if (!isPly(bytes)) return refused("not-this-format", "is no PLY file.");
    PlyHeader header;
    std::string error;
    if (!readPlyHeader(bytes, header, error)) return refused("damaged", error);
    return PlyReader(bytes, std::move(header)).run();
}

}  // namespace mesh
