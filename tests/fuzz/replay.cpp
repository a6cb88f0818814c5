// usage: fuzz_<name> SEEDS MUTATIONS      runs the folder's files and that many mutations of them
//        fuzz_<name> SEEDS --save NUMBER FILE   writes one mutation, to look at or to keep
//        fuzz_<name> FILE                 runs one file
// A finding ends the program and names the input.

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/mutations.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

char running[4096];

extern "C" void nameInput(int signal) {
    const char* const words[] = {"while running ", running, "\n"};
    for (const char* word : words) {
        if (::write(STDERR_FILENO, word, std::strlen(word)) < 0) break;
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void runOne(const std::string& input, const std::string& name) {
    std::snprintf(running, sizeof running, "%s", name.c_str());
    // Exactly as long as the input, so that a sanitizer sees a read behind its end.
    const std::vector<std::uint8_t> copy(input.begin(), input.end());
    LLVMFuzzerTestOneInput(copy.data(), copy.size());
}

std::string contents(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

bool parseNumber(const char* text, std::uint64_t& number) {
    const char* const end = text + std::strlen(text);
    const auto parsed = std::from_chars(text, end, number);
    return parsed.ec == std::errc() && parsed.ptr == end;
}

int usage() {
    std::fputs("usage: SEEDS MUTATIONS | SEEDS --save NUMBER FILE | FILE\n", stderr);
    return 2;
}

int runAll(const std::vector<std::filesystem::path>& files, const fuzz::Seeds& seeds,
           std::uint64_t mutations) {
    fuzz::timeEveryInput(true);
    for (std::size_t i = 0; i < files.size(); ++i) runOne(seeds[i], files[i].string());
    runOne({}, "nothing");
    fuzz::timeEveryInput(false);
    for (std::uint64_t number = 0; number < mutations; ++number) {
        runOne(fuzz::mutated(seeds, number), "mutation " + std::to_string(number));
    }
    std::printf("%zu seeds, %llu mutations\n", seeds.size(),
                static_cast<unsigned long long>(mutations));
    return 0;
}

}  // namespace

int main(int count, char** words) {
    std::signal(SIGABRT, nameInput);
    std::signal(SIGSEGV, nameInput);
    if (count == 2) return runOne(contents(words[1]), words[1]), 0;
    if (count < 3) return usage();
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(words[1], error)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    fuzz::Seeds seeds;
    for (const auto& file : files) seeds.push_back(contents(file));
    if (seeds.empty()) {
        std::fprintf(stderr, "%s holds no seed\n", words[1]);
        return 2;
    }
    std::uint64_t number = 0;
    if (count == 3 && parseNumber(words[2], number)) return runAll(files, seeds, number);
    const bool save = count == 5 && std::strcmp(words[2], "--save") == 0;
    if (!save || !parseNumber(words[3], number)) return usage();
    std::ofstream out(words[4], std::ios::binary);
    out << fuzz::mutated(seeds, number);
    return out.flush() ? 0 : 2;
}
