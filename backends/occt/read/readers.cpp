#include "backends/occt/read/brep_reader.h"
#include "backends/occt/read/iges_reader.h"
#include "backends/occt/read/mesh_reader.h"
#include "backends/occt/read/reader.h"
#include "backends/occt/read/step_reader.h"
#include "backends/occt/read/xbf_reader.h"

namespace occt {

Reader readerOf(FormatId id) {
    switch (id) {
        case FormatId::Step:
        case FormatId::CompressedStep: return readStep;
        case FormatId::Iges: return readIges;
        case FormatId::Brep: return readBrep;
        case FormatId::Xbf: return readXbf;
        case FormatId::Gltf: return readGltf;
        case FormatId::ThreeMf: return readThreeMf;
        case FormatId::Ply: return readPly;
        case FormatId::Stl: return readStl;
        case FormatId::Obj: return readObj;
    }
    return nullptr;
}

}  // namespace occt
