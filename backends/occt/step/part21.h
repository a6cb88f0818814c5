#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/occt/step/value.h"

namespace occt::step {

/// Position of one entity instance in the text.
struct Instance {
    std::uint64_t id = 0;    ///< the number behind '#'
    std::size_t body = 0;    ///< offset of the keyword, or of '(' for a complex instance
    std::uint32_t type = 0;  ///< number of the keyword; kComplex for a complex instance
};

/// A place in the text that breaks the grammar or common sense.
struct Defect {
    std::size_t offset = 0;
    std::string text;  ///< what stands there, cut to a few characters
};

/// Keywords are capitals by the standard; some writers use small letters.
struct IgnoringCase {
    bool operator()(std::string_view a, std::string_view b) const;
};

/// Index over the text of a STEP file (clear text encoding of ISO 10303-21): where each instance
/// stands, without reading it. Made in one pass, linear in the text. Damaged statements are
/// skipped and counted. Offsets count bytes.
class Part21 {
public:
    static constexpr std::uint32_t kComplex = 0;
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    /// `text` must outlive the index.
    explicit Part21(std::string_view text);

    /// Whether the text starts like a STEP file at all.
    bool hasMagic() const { return hasMagic_; }
    /// Whether the text ends as a whole file does.
    bool hasEnd() const { return hasEnd_; }

    const std::vector<Instance>& instances() const { return instances_; }

    /// Position in instances() by number; kNone when undefined.
    std::uint32_t position(std::uint64_t id) const;
    /// Instance by number; null when undefined.
    const Instance* find(std::uint64_t id) const;

    /// The text that the index is over.
    std::string_view text() const { return text_; }
    /// Number of a keyword as Instance::type has it; kComplex when no instance has the keyword.
    std::uint32_t typeOf(std::string_view keyword) const;

    /// Positions in instances() of all that have this keyword, complex instances included, in
    /// the order of their numbers in the text.
    const std::vector<std::uint32_t>& ofType(std::string_view keyword) const;

    /// All keywords of the data section, sorted.
    std::vector<std::string_view> keywords() const;

    /// Keyword of a simple instance as written; empty for a complex one.
    std::string_view keyword(const Instance& instance) const;

    /// The instance's keyword(s) with parameters; empty when the statement can't be read.
    std::vector<Record> read(const Instance& instance) const;
    /// The record of that keyword of the instance with this number; nothing when there is none.
    std::optional<Record> read(std::uint64_t id, std::string_view keyword) const;

    /// Records of the header section.
    const std::vector<Record>& header() const { return header_; }

    /// Deepest nesting of parentheses in the text.
    std::size_t depth() const { return depth_; }
    /// First coordinate that is no finite number of a sensible size.
    const std::optional<Defect>& absurdNumber() const { return absurdNumber_; }
    /// Statements that break the grammar, and the first of them.
    std::size_t brokenStatements() const { return brokenStatements_; }
    const std::optional<Defect>& firstBroken() const { return firstBroken_; }
    /// References to numbers that no instance has, and the first of them.
    std::size_t danglingReferences() const { return danglingReferences_; }
    const std::optional<Defect>& firstDangling() const { return firstDangling_; }

    /// Instances whose number another one before them has, and the first of them in the text.
    /// find() gives the one that stands first.
    std::size_t repeatedNumbers() const { return repeatedNumbers_; }
    const std::optional<Defect>& firstRepeated() const { return firstRepeated_; }

    /// Line of an offset, from 1.
    std::size_t line(std::size_t offset) const;

private:
    friend class Part21Indexer;

    std::string_view text_;
    bool hasMagic_ = false;
    bool hasEnd_ = false;
    std::vector<Instance> instances_;
    /// Positions by number where numbers are dense, as they are in practice; else sorted pairs.
    std::vector<std::uint32_t> dense_;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> byId_;
    std::vector<std::string_view> keywords_;
    std::map<std::string_view, std::uint32_t, IgnoringCase> keywordNumbers_;
    std::vector<std::vector<std::uint32_t>> byType_;
    std::vector<Record> header_;
    std::size_t depth_ = 0;
    std::optional<Defect> absurdNumber_;
    std::size_t brokenStatements_ = 0;
    std::optional<Defect> firstBroken_;
    std::size_t danglingReferences_ = 0;
    std::optional<Defect> firstDangling_;
    std::size_t repeatedNumbers_ = 0;
    std::optional<Defect> firstRepeated_;
};

}  // namespace occt::step
