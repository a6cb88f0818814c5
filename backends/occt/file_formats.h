#pragma once

#include <string>
#include <vector>

namespace occt {

/// A file format that the import reads, as a host shows it.
struct FileFormat {
    std::string name;      ///< of one format, "STEP"
    std::string listName;  ///< for lists in a file prompt, "STEP Files"
    std::string patterns;  ///< "*.stp;*.step", small letters
};

/// Every format that the import reads and no other, in the order of the prompt's list. Safe from
/// any thread.
std::vector<FileFormat> fileFormats();

}  // namespace occt
