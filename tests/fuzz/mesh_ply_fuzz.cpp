// PLY files, text and binary: what a scene must be, whatever the bytes.

#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/mesh_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    fuzz::readAnyMesh(mesh::Format::Ply, bytes);
    return 0;
}
