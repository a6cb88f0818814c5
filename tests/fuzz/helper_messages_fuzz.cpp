// Lines between a helper and its host: the stream cut into lines, and lines read as messages.

#include <cmath>
#include <optional>
#include <vector>

#include "backends/posix/line_buffer.h"
#include "platform/os/helper_messages.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"

namespace {

using os::HelperMessage;
using posix::LineBuffer;

std::vector<std::string> linesOf(std::string_view stream, std::size_t chunk) {
    LineBuffer buffer;
    for (; !stream.empty(); stream.remove_prefix(std::min(chunk, stream.size()))) {
        buffer.feed(stream.substr(0, chunk));
    }
    std::vector<std::string> lines;
    while (const auto line = buffer.next()) lines.push_back(*line);
    fuzz::require(buffer.waitingBytes() == 0, "a buffer without lines holds nothing");
    return lines;
}

void comesBack(const HelperMessage& message) {
    const std::string line = os::formatHelperMessage(message);
    fuzz::require(line.find_first_of("\r\n") == std::string::npos, "a message is one line");
    const auto again = os::parseHelperMessage(line);
    fuzz::require(again && again->kind == message.kind && again->fraction == message.fraction &&
                      again->name == message.name && again->text == message.text,
                  "a message comes back as it was");
}

void madeMessage(fuzz::Bytes& bytes) {
    HelperMessage message;
    message.kind = static_cast<HelperMessage::Kind>(bytes.below(5));
    const double fraction = std::abs(bytes.real());
    message.fraction = fraction <= 1.0 ? fraction : 0.5;
    message.name = bytes.text(40);
    message.text = bytes.text(200);
    comesBack(message);
}

void stream(std::string_view text, std::size_t chunk) {
    const std::vector<std::string> lines = linesOf(text, text.size());
    fuzz::require(lines == linesOf(text, chunk), "lines don't depend on how their bytes arrive");
    const bool utf8 = fuzz::isUtf8(text);
    for (const std::string& line : lines) {
        fuzz::require(line.size() <= LineBuffer::kLongestLine, "lines are cut");
        fuzz::require(!utf8 || fuzz::isUtf8(line), "a cut leaves whole characters");
        if (const auto message = os::parseHelperMessage(line)) {
            fuzz::require(message->fraction >= 0.0 && message->fraction <= 1.0,
                          "a fraction is one");
            comesBack(*message);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    const std::size_t chunk = 1 + bytes.below(64);
    // Now and then the text stands where a long line is cut.
    const bool atCut = bytes.byte() % 64 == 63;
    const std::size_t filler = atCut ? LineBuffer::kLongestLine - bytes.below(32) : 0;
    const std::string text = std::string(filler, 'x') + std::string(bytes.rest());
    stream(text, atCut ? 1000 + chunk : chunk);
    madeMessage(bytes);
    fuzz::requireLinear(bytes.rest(), [](const std::string& grown) { stream(grown, 4096); });
    return 0;
}
