#pragma once

#include <string_view>

namespace mesh {

/// True for a header and exactly as many triangles as it declares, whatever the header says.
bool isBinaryStl(std::string_view bytes);

/// True for text that begins with "solid" and goes on with "facet" or "endsolid".
bool isTextStl(std::string_view bytes);

/// True for text whose first statements are ones of OBJ.
bool isObj(std::string_view bytes);

bool isPly(std::string_view bytes);

bool isGlb(std::string_view bytes);

/// True for a JSON object that says somewhere that it is an asset.
bool isGltf(std::string_view bytes);

/// True for a ZIP archive with a 3MF model in it.
bool isThreeMf(std::string_view bytes);

}  // namespace mesh
