#pragma once

#include <string>

#include "tests/support/step_builder.h"

/// What the tests of the program feed it.
namespace cli_files {

/// The committed samples.
inline const std::string kReference = BEXTORA_SAMPLES "/gearbox_reference.step";
inline const std::string kCompare = BEXTORA_SAMPLES "/gearbox_compare.step";

/// An assembly of one box, small enough to be imported often.
inline std::string box(double heightMm) {
    support::StepBuilder builder;
    const std::size_t top = builder.addAssembly("Top");
    builder.use(top, builder.addBox("Box", {10, 20, heightMm}), {0, 0, 0});
    return builder.write();
}

/// One box that is no assembly.
inline std::string part() {
    support::StepBuilder builder;
    builder.addBox("Box", {10, 20, 30});
    return builder.write();
}

}  // namespace cli_files
