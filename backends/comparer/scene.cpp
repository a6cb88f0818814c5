#include "backends/comparer/scene.h"

#include <utility>

namespace comparer {
namespace {

using bxtexchange::GeometryState;

class SceneBuilder {
public:
    SceneBuilder(const Side& reference, const Side& compare, const Names& names,
                 const FaceReport& faces)
        : reference_(reference), compare_(compare), names_(names), faces_(faces) {
        for (const BodyDifference& body : faces.bodies) {
            paint(body.referenceFaces, onlyInReference_);
            paint(body.compareFaces, onlyInCompare_);
        }
        for (const Body& body : reference.bodies) scene_.bodies.push_back(body.shape);
        for (const Body& body : compare.bodies) scene_.bodies.push_back(body.shape);
    }

    /// `difference` is the number of what is known of the faces, or FaceReport::kNone.
    void add(const Match& match, std::int32_t difference) {
        difference_ = difference;
        knowsFaces_ = difference != FaceReport::kNone &&
                      faces_.bodies[static_cast<std::size_t>(difference)].knowsFaces;
        switch (match.state) {
            // Both files show the same there; the reference stands for both.
            case GeometryState::Unchanged: addReference(match, unchanged_); break;
            case GeometryState::OnlyInReference: addReference(match, onlyInReference_); break;
            case GeometryState::OnlyInCompare: addCompare(match, onlyInCompare_); break;
            case GeometryState::Changed: addBoth(match, changed_); break;
            case GeometryState::Moved: addBoth(match, moved_); break;
            case GeometryState::NotCompared: addBoth(match, notCompared_); break;
        }
    }

    Scene finish() {
        for (SceneGroup* group :
             {&unchanged_, &onlyInReference_, &onlyInCompare_, &changed_, &moved_, &notCompared_}) {
            std::vector<SceneGroup> filled;
            for (SceneGroup& part : group->groups) {
                if (!part.nodes.empty()) filled.push_back(std::move(part));
            }
            group->groups = std::move(filled);
            const bool empty = group->nodes.empty() && group->groups.empty();
            if (!empty) scene_.groups.push_back(std::move(*group));
        }
        return std::move(scene_);
    }

private:
    static SceneGroup group(const char* name, double red, double green, double blue) {
        return {name, red, green, blue, {}, {}};
    }
    static SceneGroup pair(const char* name, SceneGroup reference, SceneGroup compare) {
        SceneGroup both = group(name, compare.red, compare.green, compare.blue);
        both.groups.push_back(std::move(reference));
        both.groups.push_back(std::move(compare));
        return both;
    }

    /// Faces that only one side has look like bodies that only one side has.
    void paint(const std::vector<std::uint32_t>& faces, const SceneGroup& like) {
        scene_.paintings.push_back({like.red, like.green, like.blue, unchanged_.red,
                                    unchanged_.green, unchanged_.blue, faces});
    }

    void addBoth(const Match& match, SceneGroup& both) {
        addReference(match, both.groups[0]);
        addCompare(match, both.groups[1]);
    }
    void addReference(const Match& match, SceneGroup& group) {
        if (match.reference == Match::kNone) return;
        addNode(reference_, match.reference, 0, 0, group);
    }
    void addCompare(const Match& match, SceneGroup& group) {
        if (match.compare == Match::kNone) return;
        addNode(compare_, match.compare, reference_.bodies.size(), 1, group);
    }
    void addNode(const Side& side, std::int32_t number, std::size_t firstBody, std::int32_t second,
                 SceneGroup& group) {
        const Instance& instance = side.instances[static_cast<std::size_t>(number)];
        // A placement that scales is no placement to the documents that hold the scene.
        if (side.bodies[instance.body].shape.IsNull() || !instance.rigid) return;
        group.nodes.push_back({displayPath(side, instance, names_),
                               static_cast<std::uint32_t>(firstBody + instance.body),
                               instance.placement, knowsFaces_ ? 2 * difference_ + second : -1});
    }

    const Side& reference_;
    const Side& compare_;
    const Names& names_;
    const FaceReport& faces_;
    Scene scene_;
    std::int32_t difference_ = FaceReport::kNone;
    bool knowsFaces_ = false;
    SceneGroup unchanged_ = group("Unchanged", 0.83, 0.83, 0.83);
    SceneGroup onlyInReference_ = group("Only in reference", 0.85, 0.15, 0.15);
    SceneGroup onlyInCompare_ = group("Only in compare", 0.15, 0.65, 0.25);
    SceneGroup changed_ = pair("Changed", group("Reference state", 0.93, 0.55, 0.55),
                               group("Compare state", 0.55, 0.82, 0.58));
    SceneGroup moved_ = pair("Moved", group("Reference place", 0.99, 0.86, 0.68),
                             group("Compare place", 1.00, 0.60, 0.10));
    SceneGroup notCompared_ = pair("Not compared", group("Reference", 0.60, 0.58, 0.75),
                                   group("Compare", 0.50, 0.45, 0.75));
};

}  // namespace

Scene buildScene(const Side& reference, const Side& compare, const Names& names,
                 const std::vector<Match>& matches, const FaceReport& faces) {
    SceneBuilder builder(reference, compare, names, faces);
    for (std::size_t i = 0; i < matches.size(); ++i) {
        builder.add(matches[i], i < faces.ofMatch.size() ? faces.ofMatch[i] : FaceReport::kNone);
    }
    return builder.finish();
}

}  // namespace comparer
