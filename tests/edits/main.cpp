#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <Message.hxx>
#include <Message_Messenger.hxx>

#include "tests/edits/score.h"

// Makes edits whose truth is known and holds the geometry comparison to it:
//   bextora-edits [--seed N] [--count EDITS-PER-KIND] [--kind NAME]
// Prints a line per edit that went wrong and a table; exits with 1 when a bar is missed.

namespace {

struct Task {
    unsigned long seed = 1;
    unsigned long count = 18;
    std::string kind;
};

bool read(int argc, char** argv, Task& task) {
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        if (name == "--seed") {
            task.seed = std::strtoul(argv[i + 1], nullptr, 10);
        } else if (name == "--count") {
            task.count = std::strtoul(argv[i + 1], nullptr, 10);
        } else if (name == "--kind") {
            task.kind = argv[i + 1];
        } else {
            return false;
        }
    }
    return argc % 2 == 1 && task.count > 0;
}

/// A random state of its own, so that an edit can be made again without those before it.
edits::Random randomFor(const Task& task, int kind, unsigned long number, unsigned long attempt) {
    std::seed_seq seed{task.seed, static_cast<unsigned long>(kind), number, attempt};
    return edits::Random(seed);
}

void runOne(const Task& task, int kind, unsigned long number, const std::string& folder,
            edits::Tally& tally) {
    constexpr unsigned long kAttempts = 20;
    for (unsigned long attempt = 0; attempt < kAttempts; ++attempt) {
        edits::Random random = randomFor(task, kind, number, attempt);
        const auto edit = edits::makeEdit(static_cast<edits::Kind>(kind), random, folder);
        if (!edit) continue;
        const edits::Score score = edits::score(*edit);
        tally.add(*edit, score);
        if (!score.complaint.empty()) {
            std::printf("%s %lu on %s:%s\n", edits::kindName(edit->kind), number,
                        edit->base.c_str(), score.complaint.c_str());
        }
        return;
    }
    std::printf("%s %lu could not be made\n", edits::kindName(static_cast<edits::Kind>(kind)),
                number);
}

}  // namespace

int main(int argc, char** argv) {
    Task task;
    if (!read(argc, argv, task)) {
        std::fprintf(stderr, "bextora-edits [--seed N] [--count PER-KIND] [--kind NAME]\n");
        return 2;
    }
    // The library's STEP writer would talk between the lines of the table.
    Message::DefaultMessenger()->ChangePrinters().Clear();
    std::string folder = (std::filesystem::temp_directory_path() / "edits_XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) return 2;
    std::vector<edits::Tally> kinds(edits::kKinds);
    bool good = true;
    for (int kind = 0; kind < edits::kKinds; ++kind) {
        if (!task.kind.empty() && task.kind != edits::kindName(static_cast<edits::Kind>(kind))) {
            continue;
        }
        edits::Tally& tally = kinds[static_cast<std::size_t>(kind)];
        for (unsigned long i = 0; i < task.count; ++i) runOne(task, kind, i, folder, tally);
        good = good && tally.edits == task.count && tally.allRight();
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    std::printf("seed %lu\n%s", task.seed, edits::table(kinds).c_str());
    return good ? 0 : 1;
}
