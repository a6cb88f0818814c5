#include <cmath>
#include <map>
#include <optional>
#include <unordered_map>

#include "backends/occt/step/extra_items.h"

namespace occt::step {
namespace {

using Triangle = std::array<std::uint32_t, 3>;

/// A list of indices from 1; empty when an entry is no index.
std::vector<std::uint32_t> indices(const Value& list) {
    std::vector<std::uint32_t> out;
    for (const Value& item : list.items) {
        const bool good = item.kind == Value::Kind::Number && item.number >= 1.0 &&
                          item.number <= 1e9 && item.number == std::floor(item.number);
        if (!good) return {};
        out.push_back(static_cast<std::uint32_t>(item.number));
    }
    return out;
}

void addTriangle(const std::vector<std::uint32_t>& points, std::size_t a, std::size_t b,
                 std::size_t c, std::vector<Triangle>& out) {
    const Triangle triangle = {points[a], points[b], points[c]};
    const bool flat =
        triangle[0] == triangle[1] || triangle[1] == triangle[2] || triangle[0] == triangle[2];
    if (!flat) out.push_back(triangle);
}

void addStrip(const std::vector<std::uint32_t>& strip, std::vector<Triangle>& out) {
    for (std::size_t i = 2; i < strip.size(); ++i) {
        // Every second triangle of a strip runs the other way round.
        if (i % 2 == 0)
            addTriangle(strip, i - 2, i - 1, i, out);
        else
            addTriangle(strip, i - 1, i - 2, i, out);
    }
}

void addFan(const std::vector<std::uint32_t>& fan, std::vector<Triangle>& out) {
    for (std::size_t i = 2; i < fan.size(); ++i) addTriangle(fan, 0, i - 1, i, out);
}

std::optional<std::vector<std::array<double, 3>>> pointsOf(const Part21& file, std::uint64_t id,
                                                           double unitMm) {
    const auto record = file.read(id, "COORDINATES_LIST");
    if (!record) return std::nullopt;
    std::vector<std::array<double, 3>> points;
    for (const Value& item : record->at(record->values.size() - 1).items) {
        if (item.items.size() != 3) return std::nullopt;
        std::array<double, 3> point = {};
        for (std::size_t i = 0; i < 3; ++i) {
            point[i] = item.items[i].number * unitMm;
            if (!std::isfinite(point[i]) || std::abs(point[i]) > 1e12) return std::nullopt;
        }
        points.push_back(point);
    }
    return points;
}

/// Resolves a face's own numbering into positions of points; false when a number is none.
bool resolve(std::vector<Triangle>& triangles, const std::vector<std::uint32_t>& map,
             std::size_t pointCount) {
    bool local = !map.empty();
    for (const Triangle& triangle : triangles) {
        for (const std::uint32_t index : triangle) local = local && index <= map.size();
    }
    // Some writers number the points of the list although they give the face's own numbering.
    for (Triangle& triangle : triangles) {
        for (std::uint32_t& index : triangle) {
            const std::uint32_t position = local ? map[index - 1] : index;
            if (position > pointCount) return false;
            index = position - 1;
        }
    }
    return true;
}

using Points = std::vector<std::array<double, 3>>;
/// Lists of points that were read; faces of a body often share one.
using PointLists = std::map<std::uint64_t, std::optional<Points>>;

/// Keeps the points that triangles use, in the order of their first use.
MeshBody::Face compact(const Points& points, const std::vector<Triangle>& triangles) {
    MeshBody::Face face;
    std::unordered_map<std::uint32_t, std::uint32_t> places;
    for (Triangle triangle : triangles) {
        for (std::uint32_t& index : triangle) {
            const auto next = static_cast<std::uint32_t>(face.pointsMm.size());
            const auto [place, isNew] = places.try_emplace(index, next);
            if (isNew) face.pointsMm.push_back(points[index]);
            index = place->second;
        }
        face.triangles.push_back(triangle);
    }
    return face;
}

std::optional<MeshBody::Face> faceOf(const Part21& file, std::uint64_t id, double unitMm,
                                     PointLists& lists) {
    const Instance* const instance = file.find(id);
    const auto records = instance != nullptr ? file.read(*instance) : std::vector<Record>();
    if (records.size() != 1) return std::nullopt;
    const Record& record = records.front();
    const bool complex = record.keyword == "COMPLEX_TRIANGULATED_FACE";
    if (!complex && record.keyword != "TRIANGULATED_FACE") return std::nullopt;
    const auto [list, isNew] = lists.try_emplace(record.reference(1));
    if (isNew) list->second = pointsOf(file, record.reference(1), unitMm);
    if (!list->second) return std::nullopt;
    std::vector<Triangle> triangles;
    for (const Value& row : record.at(6).items) {
        const auto run = indices(row);
        if (complex)
            addStrip(run, triangles);
        else if (run.size() == 3)
            addTriangle(run, 0, 1, 2, triangles);
    }
    for (const Value& row : record.at(7).items) {
        if (complex) addFan(indices(row), triangles);
    }
    if (!resolve(triangles, indices(record.at(5)), list->second->size())) return std::nullopt;
    if (triangles.empty()) return std::nullopt;
    return compact(*list->second, triangles);
}

void addBodies(const Part21& file, std::uint64_t representation, double unitMm, PointLists& lists,
               std::vector<MeshBody>& out, std::size_t& damagedFaces) {
    const Instance* const instance = file.find(representation);
    const auto records = instance != nullptr ? file.read(*instance) : std::vector<Record>();
    if (records.empty()) return;
    for (const Value& item : records.front().at(1).items) {
        for (const char* type : {"TESSELLATED_SOLID", "TESSELLATED_SHELL"}) {
            const auto record = file.read(item.reference, type);
            if (!record) continue;
            MeshBody body{record->text(0), {}, std::string_view(type) == "TESSELLATED_SOLID"};
            for (const Value& face : record->at(1).items) {
                auto read = faceOf(file, face.reference, unitMm, lists);
                if (read)
                    body.faces.push_back(std::move(*read));
                else
                    ++damagedFaces;
            }
            if (!body.faces.empty()) out.push_back(std::move(body));
        }
    }
}

}  // namespace

std::vector<MeshBody> readMeshBodies(const Part21& file, const Product& product,
                                     std::size_t& damagedFaces) {
    std::vector<MeshBody> out;
    if (file.ofType("TESSELLATED_SOLID").empty() && file.ofType("TESSELLATED_SHELL").empty()) {
        return out;
    }
    PointLists lists;
    for (const auto* list : {&product.representations, &product.relatedRepresentations}) {
        for (const std::uint64_t representation : *list) {
            addBodies(file, representation, product.unitMm, lists, out, damagedFaces);
        }
    }
    return out;
}

}  // namespace occt::step
