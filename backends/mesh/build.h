#pragma once

#include <string>
#include <vector>

#include "backends/mesh/bodies.h"
#include "backends/mesh/scene.h"

namespace mesh {

/// A refusal of the whole file as a result.
Outcome refused(const char* code, std::string text);

/// Adds gaps for what was left out of bodies, and counts flat triangles.
void addLeftOut(const LeftOut& leftOut, Scene& scene);

/// "3 of 5 triangles were read." unless they are all there.
void addShortfall(const Count& count, const char* noun, Scene& scene);

/// Makes the scene of parts that stand beside one another: a single part is the root, several
/// stand below an assembly without a name. Refuses a file without any triangle: "damaged" when it
/// declares some, "empty" otherwise.
Outcome finished(Scene scene, std::vector<Definition> parts);

}  // namespace mesh
