#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace occt::iges {

/// One parameter.
struct Value {
    enum class Kind { Missing, Number, Text };
    Kind kind = Kind::Missing;
    double number = 0.0;
    std::string text;  ///< UTF-8

    /// Number of the entity that the parameter points to; 0 for none.
    std::uint32_t pointer() const;
};

/// A directory entry. Its number is that of its first line in the directory: 1, 3, 5, ...
struct Entity {
    int type = 0;
    int form = 0;
    std::size_t firstLine = 0;    ///< of its parameters, from 1
    std::size_t lineCount = 0;    ///< of its parameters
    std::uint32_t transform = 0;  ///< number of its matrix; 0 for none
    std::string label;            ///< without blanks around; with its number, if it has one
};

/// The text of an IGES file in fixed lines: its directory, and its parameters when asked for.
/// Made in one pass. Lines of no section are counted and passed over.
class Text {
public:
    /// `bytes` must outlive the text.
    explicit Text(std::string_view bytes);

    const std::vector<Entity>& entities() const { return entities_; }

    /// Entity by number; null when there is none.
    const Entity* find(std::uint32_t number) const;
    /// Number of the entity at a position of the list.
    static std::uint32_t numberOf(std::size_t position) {
        return static_cast<std::uint32_t>(2 * position + 1);
    }

    /// Parameters of an entity, its type first; empty when they can't be read.
    std::vector<Value> values(const Entity& entity) const;

    /// Parameter of the global section by its number in the standard, from 1; a missing one past
    /// the end.
    const Value& global(std::size_t number) const;

    /// Lines of the start section that say something, joined by blanks.
    const std::string& remarks() const { return remarks_; }

    /// Whether the last line is there and counts directory and parameters right.
    bool isWhole() const { return isWhole_; }
    /// Lines of no known section, and the first of them, from 1; 0 for none.
    std::size_t brokenLines() const { return brokenLines_; }
    std::size_t firstBroken() const { return firstBroken_; }
    std::size_t lineCount() const { return lineCount_; }
    /// Directory entries that can't be read.
    std::size_t brokenEntries() const { return brokenEntries_; }

private:
    void addLine(std::string_view line, std::string& start);
    void readDirectory(const std::vector<std::string_view>& lines);
    void dropSharedLines();
    void checkEnd(std::string_view line);
    void readGlobal(const std::string& text);
    std::vector<Value> parse(std::string_view text) const;

    std::vector<std::string_view> directory_;
    std::vector<std::string_view> parameters_;
    std::string globalText_;
    std::string_view end_;
    std::vector<Entity> entities_;
    std::vector<Value> global_;
    std::string remarks_;
    char separator_ = ',';
    char terminator_ = ';';
    bool isWhole_ = false;
    std::size_t brokenLines_ = 0;
    std::size_t firstBroken_ = 0;
    std::size_t lineCount_ = 0;
    std::size_t brokenEntries_ = 0;
};

}  // namespace occt::iges
