#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace occt {

/// What a reader exists for; readerOf() in reader.h leads from here to the reader. A new format
/// is an enumerator here, a row in formats.cpp and a line in readers.cpp.
enum class FormatId { Step, CompressedStep, Iges, Brep, Xbf, Gltf, ThreeMf, Ply, Stl, Obj };

/// One row of the table of formats. No reader's code is reached from here, so that a host that
/// only lists the formats loads none.
struct Format {
    FormatId id;
    const char* name;      ///< in sentences: "STEP"
    const char* listName;  ///< in a file prompt: "STEP Files"
    /// File name endings in small letters without the dot, the usual one first.
    std::vector<std::string_view> extensions;
    /// Whether bytes are of this format beyond doubt. Null for a format that has no mark of its
    /// own, and is known by its file name ending alone.
    bool (*recognises)(std::string_view bytes) = nullptr;
    bool isPacked = false;  ///< with gzip; `recognises` sees what was in it
    /// Names of other files that the bytes refer to, as they are written there; null for a format
    /// that always stands alone. They are opened before any reader runs.
    std::vector<std::string> (*otherFiles)(std::string_view bytes) = nullptr;
};

/// All formats, in the order in which they are listed and tried.
std::span<const Format> formats();

/// The row of a format.
const Format& formatOf(FormatId id);

/// What a file was taken for.
struct Recognition {
    const Format* format = nullptr;  ///< null: nothing that is read
    /// The format that the file's name ends like when the content is another one's.
    const Format* misnamed = nullptr;
};

/// Takes the content first and the ending of the path, capitals or not, second. `isPacked` tells
/// that the bytes were unpacked from a compressed file.
Recognition recognise(const std::string& path, std::string_view bytes, bool isPacked = false);

/// "STEP, compressed STEP and IGES": every format, for sentences.
std::string formatNames();

}  // namespace occt
