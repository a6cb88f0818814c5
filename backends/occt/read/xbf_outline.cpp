#include "backends/occt/read/xbf_outline.h"

#include <cstdint>

#include <TDF_AttributeIterator.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDF_Data.hxx>
#include <TDF_Label.hxx>

namespace occt {
namespace {

constexpr std::int32_t kEndOfAttributes = -1;
constexpr std::int32_t kEndOfLabel = -2;
constexpr std::size_t kWord = 4;
// Heads of sections lie between the list of types and the first label.
constexpr std::size_t kFurthestStart = 4096;
constexpr std::int64_t kLargestSize = std::int64_t{1} << 40;

class Walk {
public:
    explicit Walk(std::string_view bytes) : bytes_(bytes) {}

    std::optional<XbfOutline> run() {
        if (!findStart()) return std::nullopt;
        XbfOutline outline;
        std::size_t depth = 0;
        while (atLabel() || depth > 0) {
            if (next() == kEndOfLabel) {
                at_ += kWord;
                if (depth == 0 || --depth == 0) break;
                continue;
            }
            if (!enterLabel(outline)) return outline;
            ++depth;
        }
        outline.isWhole = depth == 0 && outline.labels > 0;
        return outline;
    }

private:
    std::int32_t word(std::size_t at) const {
        if (at + kWord > bytes_.size()) return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < kWord; ++i) {
            value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes_[at + i]))
                     << (8 * i);
        }
        return static_cast<std::int32_t>(value);
    }

    std::int64_t longWord(std::size_t at) const {
        return static_cast<std::int64_t>(static_cast<std::uint32_t>(word(at))) |
               static_cast<std::int64_t>(word(at + kWord)) << 32;
    }

    std::int32_t next() const { return word(at_); }
    bool atLabel() const { return at_ + 3 * kWord <= bytes_.size(); }

    /// The root has the tag 0, and its size reaches to the end of what is left or further.
    bool findStart() {
        constexpr std::string_view mark = "END_TYPES";
        const std::size_t found = bytes_.find(mark);
        if (found == std::string_view::npos) return false;
        const std::size_t from = found + mark.size();
        for (at_ = from; at_ < from + kFurthestStart && atLabel(); at_ += kWord) {
            const std::int64_t size = longWord(at_ + kWord);
            const std::int32_t first = word(at_ + 3 * kWord);
            const bool fits = first == kEndOfAttributes || (first > 0 && first < 1000);
            if (next() == 0 && size > 0 && size < kLargestSize && fits) return true;
        }
        return false;
    }

    /// Moves behind a label's attributes. False where the bytes end or make no sense.
    bool enterLabel(XbfOutline& outline) {
        if (!atLabel() || next() < 0) return false;
        at_ += 3 * kWord;
        ++outline.labels;
        while (at_ + kWord <= bytes_.size() && next() != kEndOfAttributes) {
            const std::int32_t length = word(at_ + 2 * kWord);
            if (next() <= 0 || length < 0) return false;
            const bool hasStream = word(at_ + kWord) < 0;
            at_ += 3 * kWord + static_cast<std::size_t>(length);
            if (hasStream && !skipStream()) return false;
            if (at_ > bytes_.size()) return false;
            ++outline.attributes;
        }
        at_ += kWord;
        return at_ <= bytes_.size();
    }

    /// Shapes follow their attribute, with their size in front.
    bool skipStream() {
        const std::int64_t size = longWord(at_);
        if (size <= 0 || size > kLargestSize) return false;
        at_ += static_cast<std::size_t>(size);
        return true;
    }

    std::string_view bytes_;
    std::size_t at_ = 0;
};

XbfOutline countOf(const Handle(TDocStd_Document) & document) {
    XbfOutline count;
    const auto add = [&count](const TDF_Label& label) {
        ++count.labels;
        for (TDF_AttributeIterator attribute(label); attribute.More(); attribute.Next()) {
            ++count.attributes;
        }
    };
    const TDF_Label root = document->GetData()->Root();
    add(root);
    for (TDF_ChildIterator child(root, Standard_True); child.More(); child.Next()) {
        add(child.Value());
    }
    return count;
}

void say(std::size_t found, std::size_t declared, const char* what,
         std::vector<std::string>& gaps) {
    if (found >= declared) return;
    gaps.push_back(std::to_string(found) + " of " + std::to_string(declared) + " " + what +
                   " were read.");
}

}  // namespace

std::optional<XbfOutline> xbfOutline(std::string_view bytes) {
    return Walk(bytes).run();
}

std::vector<std::string> xbfGaps(std::string_view bytes,
                                 const Handle(TDocStd_Document) & document) {
    std::vector<std::string> gaps;
    const auto declared = xbfOutline(bytes);
    if (!declared) return gaps;
    const XbfOutline found = countOf(document);
    if (!declared->isWhole) gaps.emplace_back("The file ends before its last label or is damaged.");
    say(found.labels, declared->labels, "labels of the document", gaps);
    say(found.attributes, declared->attributes, "entries of the document", gaps);
    return gaps;
}

}  // namespace occt
