#include "tests/fuzz/mesh_checks.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "backends/mesh/bodies.h"
#include "tests/fuzz/fuzz.h"

namespace fuzz {
namespace {

void checkBody(const mesh::Body& body) {
    require(!body.triangles.empty(), "a body has triangles");
    require(isUtf8(body.name), "a body's name is text");
    for (const auto& triangle : body.triangles) {
        for (const std::uint32_t corner : triangle) {
            require(corner < body.pointsMm.size(), "a corner is a point");
        }
    }
    for (const auto& point : body.pointsMm) {
        for (const double c : point) {
            require(std::abs(c) <= mesh::kLargestCoordinateMm, "a point is near");
        }
    }
    static_cast<void>(mesh::isClosed(body.triangles, body.pointsMm.size()));
}

/// Number of definitions that a definition's usages end in; each level must have been cut from
/// circles, so that taking away leaves again and again takes away all.
bool ends(const mesh::Scene& scene) {
    std::vector<std::size_t> open(scene.definitions.size());
    std::vector<std::vector<std::uint32_t>> usedBy(scene.definitions.size());
    std::vector<std::uint32_t> done;
    for (std::uint32_t i = 0; i < scene.definitions.size(); ++i) {
        open[i] = scene.definitions[i].usages.size();
        for (const auto& usage : scene.definitions[i].usages) {
            usedBy[usage.definition].push_back(i);
        }
        if (open[i] == 0) done.push_back(i);
    }
    for (std::size_t i = 0; i < done.size(); ++i) {
        for (const std::uint32_t user : usedBy[done[i]]) {
            if (--open[user] == 0) done.push_back(user);
        }
    }
    return done.size() == scene.definitions.size();
}

void checkScene(const mesh::Scene& scene) {
    require(scene.root < scene.definitions.size(), "a scene has a root");
    require(scene.unitMm > 0.0, "a unit has a length");
    for (const auto& definition : scene.definitions) {
        require(isUtf8(definition.name), "a name is text");
        for (const auto& body : definition.bodies) checkBody(body);
        for (const auto& usage : definition.usages) {
            require(usage.definition < scene.definitions.size(), "a usage is of a definition");
            for (const double number : usage.placement) {
                require(std::isfinite(number), "a placement is made of numbers");
            }
        }
    }
    require(ends(scene), "no definition contains itself");
    for (const auto& gap : scene.gaps) require(isUtf8(gap), "a gap is text");
    for (const auto& [name, text] : scene.metadata) {
        require(isUtf8(name) && isUtf8(text), "metadata are text");
    }
    const auto& counts = scene.counts.triangles;
    require(counts.read <= counts.declared, "no more is read than is declared");
    require(counts.read == counts.declared || !scene.gaps.empty(), "what is missing is said");
}

}  // namespace

void readAnyMesh(mesh::Format format, std::string_view bytes) {
    const std::string beside(200, '\1');
    const auto outcome = mesh::read(format, bytes, [&beside](const std::string& path) {
        require(!path.empty() && path.front() != '/', "a file beside stands in the folder");
        require(path != ".." && !path.starts_with("../") && path.find("/../") == path.npos,
                "or below it");
        return &beside;
    });
    static_cast<void>(mesh::recognise(bytes));
    static_cast<void>(mesh::filesBeside(bytes));
    if (!outcome.refusal) return checkScene(outcome.scene);
    require(isUtf8(outcome.refusal->text) && !outcome.refusal->text.empty(),
            "a refusal has a text");
}

}  // namespace fuzz
