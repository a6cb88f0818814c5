#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/pmi_measure.h"

namespace occt::step {

/// A note that a file holds as text for programs, or the finish of a surface.
struct NoteText {
    bool isSurfaceFinish = false;
    std::string name;            ///< empty when it says nothing
    std::string text;            ///< one line
    std::uint64_t property = 0;  ///< number of the property that holds it
    std::uint64_t subject = 0;   ///< what it belongs to
};

/// Reads the notes and surface finishes that properties of shapes hold, in the file's order.
std::vector<NoteText> readNotes(const Part21& file, const MeasureReader& measures);

}  // namespace occt::step
