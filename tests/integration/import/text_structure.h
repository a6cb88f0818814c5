#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/step_text.h"

namespace import_test {

/// What the words of a STEP file say that its import must show.
struct TextStructure {
    /// Products that are a root or used below one; one more for each assembly with bodies of its
    /// own, and one for what stands above several roots.
    std::size_t definitions = 0;
    /// Names from the root down to each occurrence, joined by '/'; sorted. A file with several
    /// roots has "Assembly" above them. Characters beyond ASCII are '?'.
    std::vector<std::string> occurrences;
    /// The same for each exact body, one for each instance: solids, free shells, and the loose
    /// faces of a set as one.
    std::vector<std::string> bodies;
    /// The same for each body of triangles of a product that has no exact one.
    std::vector<std::string> meshes;
};

/// Nothing is looked at but the text, by a reader that shares no code with the import.
TextStructure readStructure(const support::StepText& text);

/// Text with '?' for each character beyond ASCII.
std::string asciiOnly(const std::string& utf8);

}  // namespace import_test
