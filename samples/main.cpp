#include <charconv>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Standard_Failure.hxx>

#include "samples/gearbox.h"
#include "samples/pair.h"

namespace {

constexpr const char* kUsage =
    "Usage:\n"
    "  bextora-samples gearbox --out DIR\n"
    "  bextora-samples pair --occurrences N [--parts N | --size MB] --out DIR\n"
    "\n"
    "Writes pairs of STEP files to compare. `--size` picks the number of distinct parts so that\n"
    "each file has about that many megabytes.\n";

bool parseNumber(const std::string& text, double& value) {
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    return parsed.ec == std::errc() && parsed.ptr == end && value > 0.0 && value <= 1e7;
}

bool parse(const std::vector<std::string>& arguments, samples::PairOptions& options) {
    for (std::size_t i = 1; i + 1 < arguments.size(); i += 2) {
        const std::string& name = arguments[i];
        const std::string& text = arguments[i + 1];
        double value = 0.0;
        if (name == "--out") {
            options.folder = text;
        } else if (!parseNumber(text, value)) {
            return false;
        } else if (name == "--occurrences") {
            options.occurrences = static_cast<int>(value);
        } else if (name == "--parts") {
            options.parts = static_cast<int>(value);
        } else if (name == "--size") {
            options.sizeMb = value;
        } else {
            return false;
        }
    }
    return arguments.size() % 2 == 1 && !options.folder.empty();
}

bool writeGearboxPair(const std::string& folder, std::string& error) {
    const std::filesystem::path base(folder);
    return samples::writeGearbox(samples::Side::Reference,
                                 (base / "gearbox_reference.step").string(), error) &&
           samples::writeGearbox(samples::Side::Compare, (base / "gearbox_compare.step").string(),
                                 error);
}

bool writeLargePair(const samples::PairOptions& options, std::string& error) {
    samples::PairTruth truth;
    if (!samples::writePair(options, truth, error)) return false;
    std::printf("unchanged %d\nmoved %d\nchanged %d\ndeleted %d\nadded %d\n", truth.unchanged,
                truth.moved, truth.changed, truth.deleted, truth.added);
    return true;
}

int run(const std::vector<std::string>& arguments) {
    samples::PairOptions options;
    if (arguments.empty() || !parse(arguments, options)) {
        std::cerr << kUsage;
        return 2;
    }
    std::error_code ignored;
    std::filesystem::create_directories(options.folder, ignored);
    std::string error;
    bool good = false;
    if (arguments[0] == "gearbox") {
        good = writeGearboxPair(options.folder, error);
    } else if (arguments[0] == "pair") {
        good = writeLargePair(options, error);
    } else {
        std::cerr << kUsage;
        return 2;
    }
    if (!good) std::cerr << "bextora-samples: " << error << '\n';
    return good ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) try {
    // The library's own running commentary is of no use here.
    Message::DefaultMessenger()->ChangePrinters().Clear();
    return run({argv + 1, argv + argc});
} catch (const Standard_Failure& failure) {
    std::cerr << "bextora-samples: " << failure.GetMessageString() << '\n';
    return 1;
}
