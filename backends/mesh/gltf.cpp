#include "backends/mesh/gltf.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "backends/mesh/build.h"
#include "backends/mesh/gltf_file.h"
#include "backends/mesh/gltf_meshes.h"
#include "backends/mesh/graph.h"
#include "backends/mesh/recognise.h"
#include "backends/mesh/text.h"

namespace mesh {
namespace {

constexpr double kMmPerMetre = 1000.0;

/// Numbers of a list of exactly that length; false when it is none.
template <std::size_t size>
bool numbers(const Json& object, const char* name, std::array<double, size>& out) {
    const Json& list = member(object, name);
    if (!list.is_array() || list.size() != size) return false;
    for (std::size_t i = 0; i < size; ++i) {
        if (!list[i].is_number()) return false;
        out[i] = list[i].get<double>();
    }
    return true;
}

/// A node's placement in metres, Y upwards.
Matrix localMatrix(const Json& node) {
    std::array<double, 16> m{};
    if (numbers(node, "matrix", m)) {
        // Columns come first.
        return {m[0], m[4], m[8], m[1], m[5], m[9], m[2], m[6], m[10], m[12], m[13], m[14]};
    }
    std::array<double, 3> move = {0, 0, 0};
    std::array<double, 4> turn = {0, 0, 0, 1};
    std::array<double, 3> scale = {1, 1, 1};
    numbers(node, "translation", move);
    numbers(node, "rotation", turn);
    numbers(node, "scale", scale);
    auto [x, y, z, w] = turn;
    const double length = std::sqrt(x * x + y * y + z * z + w * w);
    if (length > 0.0) {
        x /= length;
        y /= length;
        z /= length;
        w /= length;
    }
    return {(1 - 2 * (y * y + z * z)) * scale[0],
            2 * (x * y - z * w) * scale[1],
            2 * (x * z + y * w) * scale[2],
            2 * (x * y + z * w) * scale[0],
            (1 - 2 * (x * x + z * z)) * scale[1],
            2 * (y * z - x * w) * scale[2],
            2 * (x * z - y * w) * scale[0],
            2 * (y * z + x * w) * scale[1],
            (1 - 2 * (x * x + y * y)) * scale[2],
            move[0],
            move[1],
            move[2]};
}

/// The same placement between frames in which Z is upwards, in millimetres.
Matrix upright(const Matrix& m) {
    constexpr Matrix kToZ = {1, 0, 0, 0, 0, -1, 0, 1, 0, 0, 0, 0};
    constexpr Matrix kToY = {1, 0, 0, 0, 0, 1, 0, -1, 0, 0, 0, 0};
    Matrix out = product(product(kToZ, m), kToY);
    for (std::size_t i = 9; i < 12; ++i) out[i] *= kMmPerMetre;
    return out;
}

class GltfReader {
public:
    explicit GltfReader(GltfFile& file) : file_(file), meshes_(file, scene_) {}

    Outcome run() {
        scene_.unitName = "Meter";
        scene_.unitMm = kMmPerMetre;
        addMetadata();
        nodes_.assign(sizeOfList(file_.root(), "nodes"), kNone);
        // Definitions of nodes and meshes grow behind the root's.
        scene_.definitions.emplace_back();
        for (const std::uint64_t node : roots()) {
            if (!isTooLarge()) addChild(0, node);
        }
        for (std::size_t i = 0; i < open_.size() && !isTooLarge(); ++i) {
            addNode(open_[i].node, open_[i].definition);
        }
        if (isTooLarge()) {
            return refused("too-large",
                           "is too large: its meshes share their points so often that there are "
                           "more than 100000000.");
        }
        for (std::string& gap : file_.gaps()) scene_.gaps.push_back(std::move(gap));
        scene_.warnings = std::move(file_.warnings());
        meshes_.sayWhatIsMissing();
        sayWhatIsMissing();
        return finish();
    }

private:
    static constexpr std::uint32_t kNone = ~0U;

    void addMetadata() {
        const Json& asset = member(file_.root(), "asset");
        constexpr std::pair<const char*, const char*> kFields[] = {
            {"generator", "Generator"},
            {"version", "glTF version"},
            {"minVersion", "glTF least version"},
            {"copyright", "Copyright"}};
        for (const auto& [field, name] : kFields) {
            const std::string text = textOf(asset, field);
            if (!text.empty()) scene_.metadata.emplace_back(name, text);
        }
    }

    /// Nodes of the scene that is to be shown; of a file without scenes those below no other.
    std::vector<std::uint64_t> roots() {
        std::vector<std::uint64_t> out;
        const std::size_t scenes = sizeOfList(file_.root(), "scenes");
        if (scenes > 0) {
            const auto number = whole(file_.root(), "scene").value_or(0);
            const Json& list = member(element(file_.root(), "scenes", number), "nodes");
            if (number >= scenes) scene_.gaps.push_back("The scene to show is not there.");
            if (scenes > 1) {
                scene_.gaps.push_back("1 of " + std::to_string(scenes) + " scenes was read.");
            }
            return nodeNumbers(list);
        }
        std::vector<bool> below(nodes_.size());
        for (std::uint64_t i = 0; i < nodes_.size(); ++i) {
            for (const std::uint64_t child : nodeNumbers(member(node(i), "children"))) {
                below[child] = true;
            }
        }
        for (std::uint64_t i = 0; i < nodes_.size(); ++i) {
            if (!below[i]) out.push_back(i);
        }
        return out;
    }

    const Json& node(std::uint64_t number) const { return element(file_.root(), "nodes", number); }

    /// Numbers of nodes that are there; others are counted.
    std::vector<std::uint64_t> nodeNumbers(const Json& list) {
        std::vector<std::uint64_t> out;
        if (!list.is_array()) return out;
        for (const Json& item : list) {
            const bool good =
                item.is_number_unsigned() && item.get<std::uint64_t>() < nodes_.size();
            if (good) out.push_back(item.get<std::uint64_t>());
            if (!good) ++missingNodes_;
        }
        return out;
    }

    void addChild(std::uint32_t parent, std::uint64_t number) {
        const std::uint32_t definition = definitionOf(number);
        scene_.definitions[parent].usages.push_back(
            {definition, upright(localMatrix(node(number)))});
    }

    /// What a node stands for: its mesh alone, or an assembly of what is below it.
    std::uint32_t definitionOf(std::uint64_t number) {
        if (nodes_[number] != kNone) return nodes_[number];
        const Json& json = node(number);
        ++scene_.counts.nodes.declared;
        ++scene_.counts.nodes.read;
        if (whole(json, "skin")) ++skins_;
        if (member(member(json, "extensions"), "EXT_mesh_gpu_instancing").is_object()) ++instanced_;
        const auto mesh = whole(json, "mesh");
        if (mesh && sizeOfList(json, "children") == 0) {
            return nodes_[number] = meshDefinition(*mesh, textOf(json, "name"));
        }
        nodes_[number] = static_cast<std::uint32_t>(scene_.definitions.size());
        scene_.definitions.emplace_back();
        scene_.definitions.back().name = textOf(json, "name");
        open_.push_back({number, nodes_[number]});
        return nodes_[number];
    }

    void addNode(std::uint64_t number, std::uint32_t definition) {
        const Json& json = node(number);
        for (const std::uint64_t child : nodeNumbers(member(json, "children"))) {
            if (!isTooLarge()) addChild(definition, child);
        }
        if (const auto mesh = whole(json, "mesh")) {
            const std::uint32_t own = meshDefinition(*mesh, textOf(json, "name"));
            scene_.definitions[definition].usages.push_back({own, kIdentity});
        }
    }

    /// One definition for all nodes with a mesh; one without a name takes those of its nodes.
    std::uint32_t meshDefinition(std::uint64_t mesh, const std::string& nodeName) {
        std::string name = textOf(element(file_.root(), "meshes", mesh), "name");
        if (name.empty()) name = nodeName;
        const auto fresh = static_cast<std::uint32_t>(scene_.definitions.size());
        const auto [found, isNew] = meshNumbers_.try_emplace({mesh, name}, fresh);
        if (!isNew) return found->second;
        Definition part;
        part.name = name;
        // Another name for a mesh that was read: its bodies once more.
        const auto other = firstOfMesh_.try_emplace(mesh, fresh);
        if (other.second) {
            part.bodies = meshes_.bodiesOf(mesh);
        } else {
            part.bodies = scene_.definitions[other.first->second].bodies;
            for (const Body& body : part.bodies) copiedPoints_ += body.pointsMm.size();
        }
        scene_.definitions.push_back(std::move(part));
        return fresh;
    }

    bool isTooLarge() const { return meshes_.isTooLarge() || copiedPoints_ > kMostPoints; }

    void sayWhatIsMissing() {
        auto& gaps = scene_.gaps;
        if (missingNodes_ > 0) gaps.push_back(counted(missingNodes_, "node") + " not there.");
        if (skins_ > 0) gaps.push_back(counted(skins_, "node") + " read without its skin.");
        if (instanced_ > 0) {
            gaps.push_back(counted(instanced_, "node") +
                           " read once instead of by EXT_mesh_gpu_instancing.");
        }
    }

    Outcome finish() {
        const bool any = std::any_of(scene_.definitions.begin(), scene_.definitions.end(),
                                     [](const Definition& d) { return !d.bodies.empty(); });
        if (!any) {
            const auto declared = scene_.counts.triangles.declared;
            std::string why = scene_.gaps.empty() ? "" : " " + scene_.gaps.front();
            if (declared == 0) return refused("empty", "holds no triangles." + why);
            return refused("damaged", "is damaged: none of its " + std::to_string(declared) +
                                          " triangles can be used." + why);
        }
        Matrix rootPlacement = kIdentity;
        pruneEmpty(scene_);
        // A sole node on top is the whole file.
        const auto& top = scene_.definitions[scene_.root].usages;
        if (top.size() == 1) {
            rootPlacement = top[0].placement;
            scene_.root = top[0].definition;
        }
        return placed(std::move(scene_), rootPlacement);
    }

    /// Takes out what holds no triangles: cameras, lights, nodes to look at.
    static void pruneEmpty(Scene& scene) {
        // Those that hold bodies say so to those that use them, until nobody new hears it.
        std::vector<std::vector<std::uint32_t>> usedBy(scene.definitions.size());
        std::vector<std::uint32_t> told;
        std::vector<bool> full(scene.definitions.size());
        for (std::uint32_t i = 0; i < scene.definitions.size(); ++i) {
            for (const Usage& usage : scene.definitions[i].usages) {
                usedBy[usage.definition].push_back(i);
            }
            if (scene.definitions[i].bodies.empty()) continue;
            full[i] = true;
            told.push_back(i);
        }
        while (!told.empty()) {
            const std::uint32_t next = told.back();
            told.pop_back();
            for (const std::uint32_t user : usedBy[next]) {
                if (full[user]) continue;
                full[user] = true;
                told.push_back(user);
            }
        }
        for (Definition& definition : scene.definitions) {
            std::erase_if(definition.usages,
                          [&full](const Usage& usage) { return !full[usage.definition]; });
        }
    }

    struct Open {
        std::uint64_t node = 0;
        std::uint32_t definition = 0;
    };

    GltfFile& file_;
    Scene scene_;
    GltfMeshes meshes_;
    std::vector<std::uint32_t> nodes_;  ///< their definitions
    std::vector<Open> open_;
    std::map<std::pair<std::uint64_t, std::string>, std::uint32_t> meshNumbers_;
    std::map<std::uint64_t, std::uint32_t> firstOfMesh_;
    std::uint64_t copiedPoints_ = 0;
    std::size_t missingNodes_ = 0;
    std::size_t skins_ = 0;
    std::size_t instanced_ = 0;
};

}  // namespace

Outcome readGltf(std::string_view bytes, const Beside& beside) {
    if (!isGlb(bytes) && !isGltf(bytes)) {
        return refused("not-this-format",
                       "is no glTF file: it is neither GLB nor JSON with an "
                       "asset.");
    }
    GltfFile file(bytes);
    if (file.refusal()) return {{}, file.refusal()};
    file.loadBuffers(beside);
    return GltfReader(file).run();
}

std::vector<std::string> gltfFilesBeside(std::string_view bytes) {
    if (!isGlb(bytes) && !isGltf(bytes)) return {};
    const GltfFile file(bytes);
    return file.refusal() ? std::vector<std::string>() : file.filesBeside();
}

}  // namespace mesh
