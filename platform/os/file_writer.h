#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace os {

/// A file that is being written from its beginning. Destruction closes it.
class OutputFile {
public:
    virtual ~OutputFile() = default;
    /// Appends the bytes as they are. False when they could not all be written.
    virtual bool write(std::string_view bytes) = 0;
    /// False when something that was accepted before did not reach the file. Nothing can be
    /// written afterwards.
    virtual bool close() = 0;
};

/// Files for the user's own documents. User-interface thread.
class FileWriter {
public:
    virtual ~FileWriter() = default;
    /// Creates the file or empties it. Null when that fails; then nothing has changed.
    virtual std::unique_ptr<OutputFile> create(const std::wstring& path) = 0;
    /// Whether any write or close failed since the last call. Formats whose writers do not tell
    /// can be asked about here.
    virtual bool takeFailure() = 0;
};

}  // namespace os
