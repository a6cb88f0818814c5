#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "backends/occt/document/binary_document.h"
#include "backends/occt/document/description.h"
#include "backends/occt/read/formats.h"
#include "backends/occt/read/measure.h"
#include "backends/occt/read/progress_reporter.h"
#include "platform/hps/import.h"
#include "platform/hps/import_options.h"

namespace occt {

/// A definition whose content stands in another file.
struct ExternalContent {
    std::size_t definition = 0;  ///< position in the description
    std::string file;            ///< as the file that refers to it writes it
};

/// What a file was found to hold.
struct DescribedModel {
    /// Definitions, names, usages, gaps. Identity and digest of the items stay empty: they are
    /// measured afterwards.
    Description description;
    /// Every item with a shape, to be measured. They point into the description, whose
    /// definitions may still be moved but not copied.
    std::vector<Measurement> measurements;
    /// What the user should know though nothing is missing; sentences without the file's name.
    std::vector<std::string> warnings;
    std::vector<ExternalContent> external;
};

/// What a reader works on.
struct ReadRequest {
    const std::string& name;   ///< of the file, as sentences call it
    const std::string& bytes;  ///< the whole file; outlives the call
    const HPS::Exchange::ImportOptions& options;
    /// Bytes of a file that the format's otherFiles() named, by the name that is written; null
    /// when there is none that may be read, or it can't be.
    std::function<const std::string*(const std::string& name)> otherFile;
    /// Readers begin the phases "reading" (up to 0.45) and "translating" (up to 0.85).
    ProgressReporter& progress;
    /// Takes the shapes; empty at first. An item names its shape by a label of this document.
    BinaryDocument& document;
};

/// Reads one file. Nothing on success, otherwise the cause: "not-this-format", "damaged",
/// "too-large", with a sentence that begins with the file's name. What is read in part is a
/// success with gaps in the description. May throw what Open CASCADE throws; the caller turns it
/// into a cause.
using Reader = std::optional<HPS::Exchange::ImportCause> (*)(const ReadRequest& request,
                                                             DescribedModel& out);

/// The reader of a format.
Reader readerOf(FormatId id);

}  // namespace occt
