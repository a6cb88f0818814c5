#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cli {

/// Paints a cell; the terminal's own colours otherwise.
enum class Paint { None, Green, Red, Yellow, Faint };

struct Cell {
    std::string text;  ///< printable UTF-8
    Paint paint = Paint::None;
};

/// Lines of cells in columns that are as wide as their widest cell, up to a limit: a wider cell
/// pushes the rest of its own line to the right and leaves the others alone. Nothing is cut.
class Table {
public:
    /// `limit`: widest column that is waited for, in terminal columns.
    explicit Table(std::size_t limit) : limit_(limit) {}

    void add(std::vector<Cell> line) { lines_.push_back(std::move(line)); }

    /// Every line with two blanks before it and between columns, without blanks at its end.
    std::string text(bool colour) const;

private:
    std::size_t limit_;
    std::vector<std::vector<Cell>> lines_;
};

/// The text in that colour; as it is without colours.
std::string painted(const std::string& text, Paint paint, bool colour);

}  // namespace cli
