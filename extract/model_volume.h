#pragma once

#include <string>

#include "extract/compare_job.h"
#include "platform/hps/component.h"

namespace extract {

/// Total volume of a model's bodies in the cube of the unit in which the active document shows
/// lengths, millimetres without such a document. Each part is measured in its own unit; its exact
/// bodies count, and its meshes only when it has no exact ones. A body that can't be measured, or
/// not to a finite number, adds nothing. 0 for a model without bodies.
///
/// `unitName` becomes the short name of that unit, and stays as it is when there is no body.
/// Blocks as long as the exchange library takes for all bodies. Exceptions of the provider pass
/// through.
double ComputeModelVolume(CompareJob& job, const HPS::CADModel& model, std::wstring& unitName);

}  // namespace extract
