#pragma once

#include <vector>

#include "tests/torture/bases.h"

namespace torture {

/// One body in every mesh format, written here.
std::vector<Base> generatedMeshes();

/// A few exact bodies as BREP, IGES, STEP and XBF, written by the geometry library.
std::vector<Base> generatedShapes();

}  // namespace torture
