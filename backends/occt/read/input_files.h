#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "backends/occt/read/formats.h"
#include "platform/hps/import.h"

namespace occt {

/// Where a name leads that a file writes for another one.
struct FileLink {
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
    std::size_t file = kNone;  ///< position in InputFiles::all()
    std::string obstacle;      ///< why it leads nowhere, "does not exist"; empty otherwise
};

/// One file of an import.
struct InputFile {
    std::string path;   ///< as sentences call it
    std::string bytes;  ///< unpacked; empty after a failure
    Recognition found;  ///< `format` is null for what is of no known format
    /// Why it can't be read; nothing for a file whose bytes are there.
    std::optional<HPS::Exchange::ImportCause> cause;
    std::map<std::string, FileLink> links;  ///< by the name that the file writes
    std::size_t depth = 0;                  ///< references that lead from the first file to it
};

/// How much the files beside the first may come to.
struct InputLimits {
    std::uint64_t bytes = std::uint64_t{4} << 30;  ///< of all of them together, unpacked
    std::size_t files = 10'000;
    std::size_t depth = 32;
};

/// A file and all that it refers to, directly or through others, opened before a reader sees any
/// of them. Names lead to files in the folder of the first one and below it, and nowhere else: no
/// full paths, no way upwards, no link that leads out. Each file is opened once.
class InputFiles {
public:
    explicit InputFiles(const std::string& path, const InputLimits& limits = {});

    /// The first one stands first.
    std::vector<InputFile>& all() { return files_; }
    const std::vector<InputFile>& all() const { return files_; }

    /// Where a name leads that the file at a position writes.
    const FileLink& link(std::size_t file, const std::string& name) const;

    /// Why a file of no format that is read can't be.
    static HPS::Exchange::ImportCause unknownFormat(const InputFile& file);

private:
    void open(InputFile& file);
    void follow(std::size_t from);
    FileLink resolve(std::size_t from, const std::string& name);

    InputLimits limits_;
    std::string folder_;  // of the first file, without links
    std::uint64_t bytes_ = 0;
    std::vector<InputFile> files_;
    std::vector<std::string> canonical_;  // of files_, position by position
    std::map<std::string, std::size_t> known_;
};

}  // namespace occt
