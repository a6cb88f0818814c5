#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/os/file_writer.h"

namespace reports {

/// Text into a file of UTF-8 behind a byte order mark. Every line feed goes to the file as
/// carriage return and line feed, as in a text file of the desktop that reports come from: a
/// line end that is written as "\r\n" has three bytes in the file. Text that is not Unicode
/// becomes U+FFFD, so that the file stays valid. Write errors are the file's to remember.
class CsvStream {
public:
    /// `file` is open and empty; it takes the mark.
    explicit CsvStream(std::unique_ptr<os::OutputFile> file);
    /// Closes the file unless Close() did.
    ~CsvStream();
    CsvStream(const CsvStream&) = delete;
    CsvStream& operator=(const CsvStream&) = delete;

    void Put(std::wstring_view text);
    void Close();

private:
    void Flush();

    std::unique_ptr<os::OutputFile> file_;
    std::wstring pending_;
};

}  // namespace reports
