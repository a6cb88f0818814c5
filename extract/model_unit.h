#pragma once

#include <string>

#include "extract/compare_job.h"
#include "platform/hps/component.h"

namespace extract {

/// The component itself when it is a product occurrence, else the nearest one above it along the
/// first owners. Empty when there is none.
HPS::Component FindOwningOccurrence(const HPS::Component& component);

/// Length in millimetres of an occurrence's unit, by the exchange library. An occurrence that has
/// none takes that of the file of the document that was active when the command was given, which
/// is loaded for it once in the plug-in's life: the job keeps the answer, 0 after a failure.
/// 0 when there is no such document, and for a component without an exchange entity.
double ProductOccurrenceUnit(CompareJob& job, const HPS::Component& component);

/// Unit in which a component is modelled: the length of one unit in metres, and its short name
/// ("mm", "cm", "m", "Km", "in", "ft", "yd", "mi"). The "Units" metadata of the owning occurrence
/// decides, the exchange library when that is missing, empty or "Unknown". What neither knows
/// counts as metres. Exceptions of the provider pass through.
void ModelUnit(CompareJob& job, const HPS::Component& component, double& factor,
               std::wstring& shortName);

}  // namespace extract
