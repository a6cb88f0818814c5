#pragma once

#include <string>

namespace import_test {

/// Three parts in an assembly "top": a solid "solid", an open box "skin", one line "wire". The
/// solid has the attribute Material, a dimension without and one with a colour, a feature, and a
/// construction plane.
std::string everythingFile();

/// One box of 10 x 20 x 30 units named "block".
std::string boxFile();

/// The same in inches.
std::string inchBoxFile();

/// A part "mesh" that is a tetrahedron of triangles, 1 mm along each axis.
std::string tetrahedronFile();

}  // namespace import_test
