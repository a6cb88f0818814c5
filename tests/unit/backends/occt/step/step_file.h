#pragma once

#include <string>

#include "backends/occt/step/part21.h"

namespace step_test {

/// A file whose data section holds these lines, with the index over it.
class StepFile {
public:
    explicit StepFile(const std::string& data)
        : text("ISO-10303-21;\nHEADER;\nFILE_SCHEMA(('X'));\nENDSEC;\nDATA;\n" + data +
               "\nENDSEC;\nEND-ISO-10303-21;\n"),
          file(text) {}
    StepFile(const StepFile&) = delete;
    StepFile& operator=(const StepFile&) = delete;

    const std::string text;
    const occt::step::Part21 file;
};

}  // namespace step_test
