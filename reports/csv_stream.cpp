#include "reports/csv_stream.h"

#include "platform/os/utf8.h"

namespace reports {
namespace {

constexpr std::size_t kFlushAt = 1U << 15U;
constexpr wchar_t kByteOrderMark = L'\uFEFF';
constexpr wchar_t kReplacement = L'\uFFFD';

bool isSurrogate(wchar_t character) {
    return character >= 0xD800 && character <= 0xDFFF;
}

}  // namespace

CsvStream::CsvStream(std::unique_ptr<os::OutputFile> file) : file_(std::move(file)) {
    Put(std::wstring_view(&kByteOrderMark, 1));
}

CsvStream::~CsvStream() {
    if (file_) Close();
}

void CsvStream::Put(std::wstring_view text) {
    for (const wchar_t character : text) {
        if (character == L'\n') pending_ += L'\r';
        pending_ += isSurrogate(character) ? kReplacement : character;
    }
    if (pending_.size() >= kFlushAt) Flush();
}

void CsvStream::Flush() {
    file_->write(os::toUtf8(pending_));
    pending_.clear();
}

void CsvStream::Close() {
    Flush();
    file_->close();
    file_.reset();
}

}  // namespace reports
