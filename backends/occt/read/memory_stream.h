#pragma once

#include <algorithm>
#include <functional>
#include <streambuf>
#include <string_view>
#include <utility>

namespace occt {

/// Stream buffer over text in memory that tells how far it was read.
class MemoryBuffer : public std::streambuf {
public:
    /// `progress` gets the share that was read; `text` must outlive the buffer.
    MemoryBuffer(std::string_view text, std::function<void(double)> progress)
        : text_(text), progress_(std::move(progress)) {}

protected:
    int_type underflow() override {
        if (at_ >= text_.size()) return traits_type::eof();
        const std::size_t end = std::min(at_ + kPiece, text_.size());
        // The base class asks for a pointer to change by, and nothing here puts characters back.
        char* const begin = const_cast<char*>(text_.data());
        setg(begin + at_, begin + at_, begin + end);
        at_ = end;
        progress_(static_cast<double>(at_) / static_cast<double>(text_.size()));
        return traits_type::to_int_type(*gptr());
    }

private:
    static constexpr std::size_t kPiece = std::size_t{1} << 18;

    std::string_view text_;
    std::function<void(double)> progress_;
    std::size_t at_ = 0;
};

}  // namespace occt
