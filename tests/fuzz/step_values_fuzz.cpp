// Pieces of a STEP file: parameters, text between quotes, names with numbers in them.

#include <array>
#include <bit>
#include <charconv>
#include <cmath>

#include "backends/occt/step/attributes.h"
#include "platform/os/utf8.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/step_writer.h"

namespace {

namespace step = occt::step;

void parameters(const std::string& text) {
    std::size_t end = 0;
    const auto values = step::parseParameters(text, end);
    fuzz::require(end <= text.size(), "a parser stays inside its text");
    if (!values) return;
    fuzz::require(end > 0 && text[end - 1] == ')', "parameters end with their parenthesis");
    const std::string written = fuzz::writeParameters(*values);
    std::size_t writtenEnd = 0;
    const auto again = step::parseParameters(written, writtenEnd);
    fuzz::require(again && writtenEnd == written.size(), "written parameters can be read");
    fuzz::require(fuzz::sameValues(*values, *again), "parameters come back as they were");
    std::vector<std::uint64_t> references;
    for (const step::Value& value : *values) step::collectReferences(value, references);
    fuzz::require(references.size() <= text.size() / 2, "a reference takes two characters");
}

void decoding(std::string_view text) {
    fuzz::require(fuzz::isUtf8(step::decodeText(text)), "a decoded text is UTF-8");
    if (!fuzz::isUtf8(text)) return;
    for (const int width : {4, 8}) {
        fuzz::require(step::decodeText(fuzz::writeText(text, width)) == text,
                      "an encoded text comes back as it was");
    }
}

void blanksAndKeywords(std::string_view text) {
    for (std::size_t at = 0; at < text.size() && at < 100; ++at) {
        std::size_t next = at;
        step::skipBlanks(text, next);
        fuzz::require(next >= at && next <= text.size(), "blanks end inside the text");
        const std::string_view word = step::readKeyword(text, next);
        fuzz::require(next <= text.size() && word.size() <= next - at, "so do keywords");
    }
}

void order(const std::array<std::string, 3>& names) {
    for (const std::string& a : names) {
        fuzz::require(!step::naturalLess(a, a), "no name stands before itself");
        for (const std::string& b : names) {
            const bool less = step::naturalLess(a, b);
            fuzz::require(!less || !step::naturalLess(b, a), "two names have one order");
            fuzz::require(less || a == b || step::naturalLess(b, a), "other names have an order");
            for (const std::string& c : names) {
                fuzz::require(!less || !step::naturalLess(b, c) || step::naturalLess(a, c),
                              "an order leads on");
            }
        }
    }
}

void number(double value) {
    if (!std::isfinite(value)) return;
    const std::string text = step::numberText(value);
    double again = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), again);
    fuzz::require(std::bit_cast<std::uint64_t>(again) == std::bit_cast<std::uint64_t>(value),
                  "a number's text is the number");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    const std::string text(bytes.rest());
    parameters(text);
    parameters("(" + text + ")");
    decoding(text);
    blanksAndKeywords(text);
    fuzz::requireLinear(text, [](const std::string& grown) {
        parameters("(" + grown + ")");
        decoding(grown);
    });
    number(bytes.real());
    order({bytes.text(6), bytes.text(6), bytes.text(6)});
    return 0;
}
