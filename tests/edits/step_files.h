#pragma once

#include <memory>
#include <string>

#include "tests/unit/backends/comparer/fake_model.h"

namespace edits {

struct StepForm {
    const char* unit = "MM";
    bool coloured = false;
};

/// A part written to a STEP file in `folder` and read again. Null when either fails.
std::shared_ptr<FakeModel> throughStep(const TopoDS_Shape& shape, const std::string& name,
                                       const StepForm& form, const std::string& folder);

}  // namespace edits
