#include "backends/mesh/build.h"

#include <algorithm>

#include "backends/mesh/text.h"

namespace mesh {

Outcome refused(const char* code, std::string text) {
    return {{}, Refusal{code, std::move(text)}};
}

void addLeftOut(const LeftOut& leftOut, Scene& scene) {
    scene.counts.flatTriangles += leftOut.flat;
    if (leftOut.absurd == 0) return;
    scene.counts.triangles.read -= leftOut.absurd;
    scene.gaps.push_back(counted(leftOut.absurd, "triangle") +
                         " left out: corners are no numbers, or further than 1e12 mm away.");
}

void addShortfall(const Count& count, const char* noun, Scene& scene) {
    if (count.read >= count.declared) return;
    scene.gaps.push_back(std::to_string(count.read) + " of " + std::to_string(count.declared) +
                         " " + noun + "s were read.");
}

Outcome finished(Scene scene, std::vector<Definition> parts) {
    std::erase_if(parts, [](const Definition& part) { return part.bodies.empty(); });
    if (parts.empty()) {
        const auto declared = scene.counts.triangles.declared;
        if (declared == 0) return refused("empty", "holds no triangles.");
        return refused("damaged", "is damaged: none of its " + std::to_string(declared) +
                                      " triangles can be used.");
    }
    scene.definitions = std::move(parts);
    if (scene.definitions.size() > 1) {
        Definition root;
        for (std::uint32_t i = 0; i < scene.definitions.size(); ++i) {
            root.usages.push_back({i, kIdentity});
        }
        scene.root = static_cast<std::uint32_t>(scene.definitions.size());
        scene.definitions.push_back(std::move(root));
    }
    return {std::move(scene), std::nullopt};
}

}  // namespace mesh
