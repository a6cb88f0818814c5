#pragma once

#include <memory>
#include <string>

#include "tests/unit/backends/comparer/fake_model.h"

/// A STEP file as a model, read in this very process. Null when it can't be read.
std::shared_ptr<FakeModel> readStepModel(const std::string& path);

/// Reads a STEP file and writes it again with Open CASCADE in a unit ("MM", "INCH").
bool rewriteStep(const std::string& from, const std::string& to, const char* unit);
