#include <exception>
#include <new>

#include "backends/mesh/build.h"
#include "backends/mesh/gltf.h"
#include "backends/mesh/obj.h"
#include "backends/mesh/ply.h"
#include "backends/mesh/scene.h"
#include "backends/mesh/stl.h"
#include "backends/mesh/three_mf.h"

namespace mesh {
namespace {

Outcome dispatch(Format format, std::string_view bytes, const Beside& beside) {
    switch (format) {
        case Format::Stl: return readStl(bytes);
        case Format::Obj: return readObj(bytes);
        case Format::Ply: return readPly(bytes);
        case Format::Gltf: return readGltf(bytes, beside);
        default: return readThreeMf(bytes);
    }
}

}  // namespace

Outcome read(Format format, std::string_view bytes, const Beside& beside) {
    try {
        return dispatch(format, bytes, beside);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& failure) {
        return refused("damaged",
                       std::string("is damaged: the reader gave up (") + failure.what() + ").");
    }
}

std::vector<std::string> filesBeside(std::string_view bytes) {
    return gltfFilesBeside(bytes);
}

}  // namespace mesh
