#pragma once

#include <cstdint>
#include <vector>

#include <Standard_Transient.hxx>
#include <StepData_Protocol.hxx>
#include <StepData_StepModel.hxx>

#include "backends/occt/read/step_pieces.h"
#include "backends/occt/step/part21.h"

namespace occt {

/// A piece of a file as Open CASCADE's typed entities.
struct StepModel {
    Handle(StepData_StepModel) model;
    /// The entities of the piece's instances, in their order; null for one that can't be read.
    std::vector<Handle(Standard_Transient)> entities;
};

/// Makes the entities of a piece without the library's own scanner, which takes longer for a
/// file than all else that is done to its text.
StepModel readEntities(const step::Part21& file, const std::vector<std::uint32_t>& piece,
                       const StepPieces& pieces, const Handle(StepData_Protocol) & protocol);

}  // namespace occt
