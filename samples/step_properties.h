#pragma once

#include <string>
#include <string_view>

#include <StepBasic_ProductDefinition.hxx>
#include <StepData_StepModel.hxx>

namespace samples {

/// Adds one user-defined property with a text value to a product of a STEP model.
void addTextProperty(const Handle(StepData_StepModel) & model,
                     const Handle(StepBasic_ProductDefinition) & product, const std::string& key,
                     const std::string& value);
/// The same with a length in millimetres.
void addLengthProperty(const Handle(StepData_StepModel) & model,
                       const Handle(StepBasic_ProductDefinition) & product, const std::string& key,
                       double valueMm);

/// The text of an exchange file with everything beyond ASCII in the form that the format
/// prescribes (\X2\...\X0\, \X4\ past U+FFFF), instead of raw UTF-8.
std::string withEncodedText(std::string_view utf8);

}  // namespace samples
