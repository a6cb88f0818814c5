#include "tests/torture/judge.h"

namespace torture {
namespace {

// A limit is looked at in time, but the machine may be busy.
constexpr double kMarginSeconds = 15;

std::string lack(const char* what, std::optional<std::uint64_t> declared, std::uint64_t loaded,
                 std::uint64_t slack) {
    if (!declared || loaded + slack >= *declared) return {};
    return std::to_string(loaded) + " of " + std::to_string(*declared) + ' ' + what +
           " are there, and the import counts as whole";
}

std::string silentLack(const Loaded& loaded, const Declared& declared, std::uint64_t slack) {
    if (declared.isBroken) return "the container is broken, and the import counts as whole";
    // Each usage shows up as an occurrence of its own at least, and the root has none.
    const std::uint64_t used = loaded.occurrences == 0 ? 0 : loaded.occurrences - 1;
    std::string text = lack("usages", declared.usages, used, 0);
    if (text.empty()) text = lack("faces", declared.faces, loaded.faces, 0);
    if (text.empty()) text = lack("triangles", declared.triangles, loaded.triangles, slack);
    return text;
}

Outcome outcomeOf(const Ended& ended) {
    if (ended.success) return ended.gaps.empty() ? Outcome::Complete : Outcome::Partial;
    if (ended.causeCode == "crashed") return Outcome::Crashed;
    const bool limit = ended.causeCode == "time-limit" || ended.causeCode == "memory-limit";
    return limit ? Outcome::Limit : Outcome::Refused;
}

std::string violationOf(const std::string& path, Outcome outcome, const Ended& ended) {
    if (ended.success) return {};
    if (ended.causeText.find(path) == std::string::npos) {
        return "the cause does not name the file: " + ended.causeText;
    }
    if (ended.causeText.find('\n') != std::string::npos) return "the cause is no single line";
    const bool phase = ended.causeText.find(" while ") != std::string::npos;
    if (outcome != Outcome::Refused && !phase) {
        return "the cause does not name the phase: " + ended.causeText;
    }
    const bool known = ended.causeCode != "internal" && ended.causeCode != "cancelled";
    return known ? "" : "the cause is our own: " + ended.causeText;
}

}  // namespace

const char* nameOf(Outcome outcome) {
    switch (outcome) {
        case Outcome::Complete: return "complete";
        case Outcome::Partial: return "partial";
        case Outcome::Refused: return "refused";
        case Outcome::Crashed: return "crashed";
        case Outcome::Limit: return "limit";
    }
    return "";
}

Verdict judge(const std::string& path, const Ended& ended, const Declared& declared,
              std::uint64_t slack, double limitSeconds) {
    Verdict verdict;
    verdict.outcome = outcomeOf(ended);
    verdict.violation = violationOf(path, verdict.outcome, ended);
    if (verdict.outcome == Outcome::Complete) {
        verdict.violation = silentLack(ended.loaded, declared, slack);
    }
    if (verdict.violation.empty() && ended.seconds > limitSeconds + kMarginSeconds) {
        verdict.violation = "it took " + std::to_string(ended.seconds) + " s";
    }
    return verdict;
}

}  // namespace torture
