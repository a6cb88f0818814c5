#include "backends/occt/read/reader.h"
#include "backends/occt/read/step_reader.h"

namespace occt {

Reader readerOf(FormatId id) {
    switch (id) {
        case FormatId::Step: return readStep;
    }
    return nullptr;
}

}  // namespace occt
