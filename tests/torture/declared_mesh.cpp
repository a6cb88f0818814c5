#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <cstring>
#include <set>
#include <sstream>
#include <vector>

#include "tests/torture/archive.h"
#include "tests/torture/declared.h"

namespace torture {
namespace {

using Json = nlohmann::json;
using Corner = std::array<double, 3>;

template <class T>
T valueAt(const std::string& bytes, std::size_t at) {
    T value{};
    if (at + sizeof(T) <= bytes.size()) std::memcpy(&value, bytes.data() + at, sizeof(T));
    return value;
}

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

std::string lowered(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

bool flat(const Corner& a, const Corner& b, const Corner& c) {
    return a == b || b == c || a == c;
}

double numberIn(const std::string& word) {
    double value = 0;
    const char* begin = word.data();
    if (*begin == '+') ++begin;
    std::from_chars(begin, word.data() + word.size(), value);
    return value;
}

/// The format's coordinates are single: what falls together there is one point.
Corner cornerOf(const std::vector<std::string>& words) {
    Corner corner{};
    for (std::size_t i = 0; i < 3 && i + 1 < words.size(); ++i) {
        corner[i] = static_cast<float>(numberIn(words[i + 1]));
    }
    return corner;
}

Declared declaredInBinaryStl(const std::string& bytes) {
    const std::uint64_t promised = valueAt<std::uint32_t>(bytes, 80);
    const std::uint64_t present = bytes.size() < 84 ? 0 : (bytes.size() - 84) / 50;
    std::uint64_t flatOnes = 0;
    for (std::uint64_t i = 0; i < std::min(promised, present); ++i) {
        std::array<Corner, 3> corners;
        for (std::size_t k = 0; k < 9; ++k) {
            corners[k / 3][k % 3] = valueAt<float>(bytes, 84 + i * 50 + 12 + 4 * k);
        }
        flatOnes += flat(corners[0], corners[1], corners[2]) ? 1 : 0;
    }
    Declared declared;
    declared.triangles = promised - flatOnes;
    return declared;
}

Declared declaredInTextStl(const std::string& bytes) {
    std::istringstream in(bytes);
    std::uint64_t triangles = 0;
    std::vector<Corner> corners;
    for (std::string line; std::getline(in, line);) {
        const auto words = wordsOf(lowered(line));
        if (words.empty()) continue;
        if (words[0] == "facet") corners.clear();
        if (words[0] == "vertex") corners.push_back(cornerOf(words));
        if (words[0] != "endfacet") continue;
        if (corners.size() == 3 && !flat(corners[0], corners[1], corners[2])) ++triangles;
    }
    Declared declared;
    declared.triangles = triangles;
    return declared;
}

/// Triangles of the primitives of one glTF mesh, by the counts of their accessors.
std::uint64_t trianglesOf(const Json& file, const Json& mesh) {
    std::uint64_t triangles = 0;
    for (const Json& primitive : mesh.value("primitives", Json::array())) {
        if (primitive.value("mode", 4) != 4) continue;
        const int accessor = primitive.contains("indices")
                                 ? primitive["indices"].get<int>()
                                 : primitive.at("attributes").at("POSITION").get<int>();
        triangles += file.at("accessors").at(accessor).at("count").get<std::uint64_t>() / 3;
    }
    return triangles;
}

/// Meshes that the nodes of the shown scene lead to.
std::set<std::size_t> shownMeshes(const Json& file) {
    std::set<std::size_t> meshes;
    std::set<std::size_t> seen;
    std::vector<std::size_t> open;
    const Json& scene = file.at("scenes").at(file.value("scene", std::size_t{0}));
    for (const Json& node : scene.value("nodes", Json::array())) open.push_back(node);
    while (!open.empty()) {
        const std::size_t number = open.back();
        open.pop_back();
        if (!seen.insert(number).second) continue;
        const Json& node = file.at("nodes").at(number);
        if (node.contains("mesh")) meshes.insert(node["mesh"].get<std::size_t>());
        for (const Json& child : node.value("children", Json::array())) open.push_back(child);
    }
    return meshes;
}

std::string jsonOf(const std::string& bytes) {
    if (!bytes.starts_with("glTF")) return bytes;
    return bytes.substr(std::min<std::size_t>(20, bytes.size()), valueAt<std::uint32_t>(bytes, 12));
}

/// Value of an attribute in the tag that starts at `at`.
std::string attribute(const std::string& xml, std::size_t at, const std::string& name) {
    const std::size_t end = xml.find('>', at);
    const std::size_t found = xml.find(' ' + name + "=\"", at);
    if (found == std::string::npos || found > end) return {};
    const std::size_t begin = found + name.size() + 3;
    return xml.substr(begin, xml.find('"', begin) - begin);
}

}  // namespace

Declared declaredInStl(const std::string& bytes) {
    const bool fits =
        bytes.size() >= 84 && bytes.size() == 84 + 50ULL * valueAt<std::uint32_t>(bytes, 80);
    const std::size_t start = bytes.find_first_not_of(" \t\r\n");
    const bool solid = start != std::string::npos && lowered(bytes.substr(start, 5)) == "solid";
    return solid && !fits ? declaredInTextStl(bytes) : declaredInBinaryStl(bytes);
}

Declared declaredInObj(const std::string& bytes) {
    std::istringstream in(bytes);
    std::vector<Corner> points;
    std::uint64_t triangles = 0;
    for (std::string line; std::getline(in, line);) {
        const auto words = wordsOf(line.substr(0, line.find('#')));
        if (words.size() >= 4 && words[0] == "v") points.push_back(cornerOf(words));
        if (words.size() < 4 || words[0] != "f") continue;
        std::vector<Corner> corners;
        for (std::size_t i = 1; i < words.size(); ++i) {
            const auto index = static_cast<long long>(numberIn(words[i]));
            const long long at =
                index < 0 ? static_cast<long long>(points.size()) + index : index - 1;
            // A corner that is not there counts as one of its own.
            const bool there = at >= 0 && at < static_cast<long long>(points.size());
            const Corner corner = there ? points[static_cast<std::size_t>(at)]
                                        : Corner{1e300, static_cast<double>(i), 0};
            if (corners.empty() || corners.back() != corner) corners.push_back(corner);
        }
        if (corners.size() > 1 && corners.front() == corners.back()) corners.pop_back();
        // A face that comes back to a corner is folded there: nothing says how much of it is flat.
        const bool folded =
            std::set<Corner>(corners.begin(), corners.end()).size() < corners.size();
        if (corners.size() >= 3 && !folded) triangles += corners.size() - 2;
    }
    Declared declared;
    declared.triangles = triangles;
    return declared;
}

Declared declaredInPly(const std::string& bytes) {
    const std::size_t end = bytes.find("end_header");
    Declared declared;
    declared.isUpperBound = true;
    if (end == std::string::npos) return declared;
    std::istringstream in(bytes.substr(0, end));
    for (std::string line; std::getline(in, line);) {
        const auto words = wordsOf(line);
        const bool faces = words.size() >= 3 && words[0] == "element" && words[1] == "face";
        if (faces && !declared.triangles) {
            declared.triangles = static_cast<std::uint64_t>(std::max(numberIn(words[2]), 0.0));
        }
    }
    return declared;
}

Declared declaredInGltf(const std::string& bytes) {
    Declared declared;
    declared.isUpperBound = true;
    try {
        const Json file = Json::parse(jsonOf(bytes));
        std::uint64_t triangles = 0;
        for (const std::size_t mesh : shownMeshes(file)) {
            triangles += trianglesOf(file, file.at("meshes").at(mesh));
        }
        declared.triangles = triangles;
    } catch (const Json::exception&) {
        // No JSON, or not of this form: nothing is declared that could be counted.
    }
    return declared;
}

Declared declaredIn3mf(const std::string& bytes) {
    Declared declared;
    declared.isUpperBound = true;
    const auto files = unzipped(bytes);
    if (!files) return declared;
    const auto model = files->find("3D/3dmodel.model");
    if (model == files->end()) return declared;
    // Components lead to other objects; files that use them are not counted.
    const std::string& xml = model->second;
    if (xml.find("<component ") != std::string::npos) return declared;
    std::set<std::string> built;
    for (std::size_t at = xml.find("<item "); at != std::string::npos;
         at = xml.find("<item ", at + 1)) {
        built.insert(attribute(xml, at, "objectid"));
    }
    std::uint64_t triangles = 0;
    for (std::size_t at = xml.find("<object "); at != std::string::npos;) {
        const std::size_t next = xml.find("<object ", at + 1);
        const bool counts = built.contains(attribute(xml, at, "id"));
        for (std::size_t t = xml.find("<triangle ", at); counts && t < next;
             t = xml.find("<triangle ", t + 1)) {
            ++triangles;
        }
        at = next;
    }
    declared.triangles = triangles;
    return declared;
}

}  // namespace torture
