#include "apps/cli/table.h"

#include <algorithm>

#include "apps/cli/text.h"

namespace cli {
namespace {

constexpr std::size_t kGap = 2;

const char* escapeFor(Paint paint) {
    switch (paint) {
        case Paint::Green: return "\x1b[32m";
        case Paint::Red: return "\x1b[31m";
        case Paint::Yellow: return "\x1b[33m";
        case Paint::Faint: return "\x1b[2m";
        case Paint::None: break;
    }
    return "";
}

}  // namespace

std::string painted(const std::string& text, Paint paint, bool colour) {
    if (!colour || paint == Paint::None || text.empty()) return text;
    return escapeFor(paint) + text + "\x1b[0m";
}

std::string Table::text(bool colour) const {
    std::vector<std::size_t> widths;
    for (const auto& line : lines_) {
        if (line.size() > widths.size()) widths.resize(line.size());
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::size_t width = columns(line[i].text);
            if (width <= limit_) widths[i] = std::max(widths[i], width);
        }
    }
    std::string out;
    for (const auto& line : lines_) {
        std::size_t wanted = kGap;
        std::size_t written = 0;
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::size_t width = columns(line[i].text);
            if (width > 0) {
                const std::size_t blanks = std::max(wanted - std::min(written, wanted), kGap);
                out.append(blanks, ' ');
                out += painted(line[i].text, line[i].paint, colour);
                written += blanks + width;
            }
            wanted += widths[i] + kGap;
        }
        out += '\n';
    }
    return out;
}

}  // namespace cli
