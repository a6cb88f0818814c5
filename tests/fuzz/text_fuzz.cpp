// Conversions between UTF-8 and wide text, text for a terminal, and paths taken apart.

#include <algorithm>

#include "apps/cli/text.h"
#include "platform/bxt/file_path.h"
#include "platform/hps/utf8.h"
#include "platform/os/utf8.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"

namespace {

bool isCharacter(wchar_t c) {
    const auto code = static_cast<std::uint32_t>(c);
    return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

void fromUtf8(std::string_view bytes) {
    const std::wstring wide = os::toWide(bytes);
    fuzz::require(os::toUtf8(wide) == bytes, "any bytes survive being wide for a while");
    fuzz::require(HPS::UTF8(std::string(bytes)).ToWide() == wide, "both conversions agree");
    std::vector<wchar_t> array;
    HPS::UTF8(std::string(bytes)).ToWStr(array);
    const std::size_t expected = wide.empty() ? 0 : wide.size() + 1;
    fuzz::require(array.size() == expected && (array.empty() || array.back() == L'\0'),
                  "the array ends in a zero");
}

void fromWide(const std::wstring& wide) {
    const std::string bytes = os::toUtf8(wide);
    const std::wstring again = os::toWide(bytes);
    if (std::all_of(wide.begin(), wide.end(), isCharacter)) {
        fuzz::require(fuzz::isUtf8(bytes), "characters give UTF-8");
        fuzz::require(again == wide, "characters survive being UTF-8 for a while");
    }
    const bxt::FilePath path(wide);
    const std::wstring joined = path.getDrive() + path.getDir() + path.getFName() + path.getExt();
    fuzz::require(joined == wide, "the pieces of a path are the path");
}

void forTerminal(std::string_view bytes) {
    const std::string shown = cli::printable(bytes);
    fuzz::require(shown == cli::printable(std::wstring_view(os::toWide(bytes))),
                  "both forms of a text look the same");
    fuzz::require(fuzz::isUtf8(shown), "a terminal gets UTF-8");
    const auto isControl = [](wchar_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); };
    const std::wstring wide = os::toWide(shown);
    fuzz::require(std::none_of(wide.begin(), wide.end(), isControl),
                  "a terminal gets no control characters");
    fuzz::require(cli::printable(shown) == shown, "what is printable stays");
    fuzz::require(cli::columns(shown) <= 2 * wide.size(), "a character is two columns at most");
}

void all(std::string_view bytes) {
    fromUtf8(bytes);
    fromWide(os::toWide(bytes));
    forTerminal(bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    all(bytes.rest());
    fromWide(bytes.wide(40));
    fuzz::requireLinear(bytes.rest(), [](const std::string& grown) { all(grown); });
    return 0;
}
