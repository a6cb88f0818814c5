#include "backends/occt/read/brep_reader.h"
#include "backends/occt/read/reader.h"
#include "backends/occt/read/step_reader.h"
#include "backends/occt/read/xbf_reader.h"

namespace occt {

Reader readerOf(FormatId id) {
    switch (id) {
        case FormatId::Step:
        case FormatId::CompressedStep: return readStep;
        case FormatId::Brep: return readBrep;
        case FormatId::Xbf: return readXbf;
    }
    return nullptr;
}

}  // namespace occt
