#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mesh {

using Point = std::array<double, 3>;
/// Positions of the three corners in the points of the same body, counter-clockwise from outside.
using Triangle = std::array<std::uint32_t, 3>;
/// Three rows of a linear map, then a translation in millimetres.
using Matrix = std::array<double, 12>;
constexpr Matrix kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

/// One connected piece of triangles. Points that have the same coordinates are one point.
struct Body {
    std::string name;  ///< UTF-8; empty when the format gives none
    std::vector<Point> pointsMm;
    std::vector<Triangle> triangles;
};

/// A definition used in another one. In a scene that was read, the placement is a rotation and a
/// translation: scales and mirrors have gone into the points.
struct Usage {
    std::uint32_t definition = 0;
    Matrix placement = kIdentity;
};

/// A name and a text.
using Metadata = std::pair<std::string, std::string>;

/// A part or an assembly; it may have bodies and usages at once.
struct Definition {
    std::string name;  ///< UTF-8; empty when the format gives none
    std::vector<Usage> usages;
    std::vector<Body> bodies;
    std::vector<Metadata> metadata;
};

/// What a file declares, and what was made of it.
struct Count {
    std::uint64_t declared = 0;
    std::uint64_t read = 0;
    bool operator==(const Count&) const = default;
};

/// Triangles count in the file: one that is flat was read, though no body holds it.
struct Counts {
    Count triangles;
    Count vertices;
    Count nodes;   ///< glTF nodes of the scene; 3MF build items and components
    Count meshes;  ///< glTF meshes; 3MF objects; named pieces of the other formats
    std::uint64_t flatTriangles = 0;  ///< left out since two corners are one point
};

/// A file of triangles, whatever its format. Lengths in millimetres, Z upwards.
struct Scene {
    std::vector<Definition> definitions;
    std::uint32_t root = 0;  ///< position of the definition that is the whole file
    std::string unitName = "Millimeter";
    double unitMm = 1.0;             ///< length of the unit that the file was written in
    std::vector<Metadata> metadata;  ///< of the file itself
    Counts counts;
    /// What the file declares and is not in the scene, one sentence each.
    std::vector<std::string> gaps;
    /// What is odd about the file though nothing is missing, one sentence each.
    std::vector<std::string> warnings;
};

/// Why nothing was read. The sentence begins after the file's name: "is damaged: line 4 ...".
struct Refusal {
    std::string code;  ///< "damaged", "empty", "not-this-format" or "too-large"
    std::string text;
};

struct Outcome {
    Scene scene;
    std::optional<Refusal> refusal;  ///< the scene is empty when there is one
};

/// Bytes of a file that stands beside the one being read, by its path relative to that file's
/// folder: it does not begin with a slash and has no part that leads upwards. Null when there is
/// none or it may not be read; otherwise it outlives the reading.
using Beside = std::function<const std::string*(const std::string& relativePath)>;

enum class Format { Stl, Obj, Ply, Gltf, ThreeMf };

/// The format that the content speaks for; nothing when it speaks for none. OBJ is recognised by
/// its first statements alone, the others by their first bytes, or an STL file by its size.
std::optional<Format> recognise(std::string_view bytes);

/// Whether the content speaks for that format.
bool is(Format format, std::string_view bytes);

/// Reads a whole file. Throws std::bad_alloc when memory runs out and nothing else. Takes memory
/// by what the file holds, not by what it promises, and time in proportion to its length.
Outcome read(Format format, std::string_view bytes, const Beside& beside);

/// Paths that a glTF file's buffers name and that lie in its folder or below, in order, each once:
/// what `beside` may be asked for.
std::vector<std::string> filesBeside(std::string_view bytes);

}  // namespace mesh
