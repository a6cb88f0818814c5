#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>

#include "backends/occt/model.h"

namespace comparer {

/// Texts and paths by number; equal ones have equal numbers. A path is its last name and the path
/// above, so that models of thousands of levels cost no more than they have components.
class Names {
public:
    static constexpr std::uint32_t kRootPath = 0;

    std::uint32_t id(const std::string& text);
    const std::string& text(std::uint32_t id) const { return *texts_[id]; }

    std::uint32_t path(std::uint32_t above, std::uint32_t name);
    /// Name at the end of a path; of the root path, the empty text.
    const std::string& lastName(std::uint32_t path) const { return text(paths_[path].name); }
    /// Names joined by " / ".
    std::string pathText(std::uint32_t path) const;

    Names();

private:
    struct PathNode {
        std::uint32_t above = 0;
        std::uint32_t name = 0;
    };
    std::unordered_map<std::string, std::uint32_t> ids_;
    std::vector<const std::string*> texts_;  // into ids_, whose keys stay where they are
    std::unordered_map<std::uint64_t, std::uint32_t> pathIds_;
    std::vector<PathNode> paths_;
};

/// One distinct body, in the frame of its part.
struct Body {
    TopoDS_Shape shape;
    std::optional<bxtexchange::BodyIdentity> identity;
    std::string digest;
    gp_Pnt centre;          ///< centroid; middle of the box when it could not be measured
    double radiusMm = 0.0;  ///< no point of the body is further from the centre

    /// False when nothing can be said about the body but that it is there.
    bool comparable() const { return identity || !digest.empty(); }
};

/// One placed body. Numbers of texts belong to the `Names` that it was collected with.
struct Instance {
    std::uint32_t body = 0;
    std::uint32_t path = 0;     ///< below the root, so that a renamed root renames nothing
    std::uint32_t product = 0;  ///< name of the product
    gp_Trsf placement;
    bool rigid = true;  ///< false for a placement that scales or mirrors
};

/// All geometry of one file.
struct Side {
    std::vector<Body> bodies;
    std::vector<Instance> instances;  ///< in model order
    std::string rootName;
    bool isAssembly = false;  ///< the root occurrence has occurrences below it
    std::vector<std::string> gaps;
};

/// Walks a model. Never throws for what stands in the model: a body whose shape can't be had is
/// kept as one that can't be compared.
Side collectSide(const occt::Model& model, Names& names);

/// World-space centre of an instance's body.
gp_Pnt worldCentre(const Side& side, const Instance& instance);

/// Path of an instance as users read it: from the root, joined by " / ".
std::string displayPath(const Side& side, const Instance& instance, const Names& names);

}  // namespace comparer
