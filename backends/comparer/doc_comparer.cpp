#include "backends/comparer/doc_comparer.h"

#include <charconv>
#include <filesystem>
#include <optional>

#include "backends/comparer/helper_run.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace comparer {
namespace {

os::RunToken* currentToken() {
    const auto& workers = os::services().workers;
    return workers ? workers->current() : nullptr;
}

/// Runs what others can see, unless the calling worker was killed before.
bool publish(const std::function<void()>& effect) {
    os::RunToken* const token = currentToken();
    if (token != nullptr) return token->publish(effect);
    effect();
    return true;
}

std::string numberText(double value) {
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

/// A file name that no other run on this machine uses: files made from the result are named
/// after it.
std::string freshResultPath() {
    const auto& files = os::services().files;
    const std::wstring folder = files ? files->makePrivateFolder(L"result") : std::wstring();
    if (folder.empty()) return {};
    const std::filesystem::path base(os::toUtf8(folder));
    return (base / ("comparison-" + base.filename().string() + ".xbf")).string();
}

std::optional<bxtimp::IDocComparer::Status> parseStatus(const std::string& text) {
    using Comparer = bxtimp::IDocComparer;
    Comparer::Status status = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, status);
    if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
    const bool known =
        status >= Comparer::OpenReferenceAlone && status <= Comparer::AssemblyAgainstPart;
    return known ? std::optional(status) : std::nullopt;
}

}  // namespace

void DocComparer::log(const std::string& text) const {
    if (!options_.observer.log || text.empty()) return;
    publish([&] { options_.observer.log(text); });
}

bool DocComparer::importFile(const std::string& path, std::string& folder) const {
    HPS::Exchange::ImportCause cause;
    folder = imports_->documentFolder(path, cause);
    if (folder.empty()) log(cause.text);
    return !folder.empty();
}

DocComparer::Answer DocComparer::compareFiles(const std::string& referencePath,
                                              const std::string& comparePath) const {
    Answer answer;
    const auto progress = [&](double fraction, const std::string& phase) {
        if (!options_.observer.progress) return;
        publish([&] { options_.observer.progress(fraction, phase); });
    };
    progress(0.0, "importing");
    std::string reference;
    std::string compare;
    if (!importFile(referencePath, reference) || !importFile(comparePath, compare)) return answer;

    const std::string out = freshResultPath();
    if (out.empty()) {
        log("There is no folder for the result of the comparison.");
        return answer;
    }
    const std::string names = referencePath + " and " + comparePath;
    const HelperOutcome outcome = runHelper(
        {"compare", "--reference", reference, "--compare", compare, "--out", out,
         "--length-tolerance", numberText(options_.lengthToleranceMm), "--relative-tolerance",
         numberText(options_.relativeTolerance), "--angle-tolerance",
         numberText(options_.angleToleranceDeg), "--body-limit-s",
         numberText(options_.bodyTimeLimitS), "--shortcuts", options_.shortcuts ? "on" : "off"},
        {progress, [&](const std::string& text) { log(text); }});
    answer.killed = outcome.end == os::ProcessEnd::Killed;
    if (outcome.good) {
        take(outcome, out, names, answer);
    } else {
        log("The comparison of " + names + " failed. " + outcome.cause);
    }
    return answer;
}

void DocComparer::take(const HelperOutcome& outcome, const std::string& out,
                       const std::string& names, Answer& answer) const {
    const auto said = outcome.results.find("status");
    const auto status = said == outcome.results.end() ? std::nullopt : parseStatus(said->second);
    std::error_code ignored;
    if (!status || (*status == Done && !std::filesystem::exists(out, ignored))) {
        log("The comparison of " + names + " failed. The helper process gave no result.");
        return;
    }
    answer.status = *status;
    if (answer.status == Done) {
        answer.path = out;
    } else if (const auto cause = outcome.results.find("cause"); cause != outcome.results.end()) {
        log(names + ": " + cause->second);
    }
}

std::wstring DocComparer::doComparision(std::shared_ptr<bxtsg::IFactory> /*factory*/,
                                        const wchar_t* referencePath, const wchar_t* comparePath,
                                        bxt::IStatusManager* /*statusManager*/, Status& status) {
    if (referencePath == nullptr || comparePath == nullptr) return {};
    const Answer answer = compareFiles(os::toUtf8(referencePath), os::toUtf8(comparePath));
    if (answer.killed) return {};
    const bool seen = publish([&] { status = answer.status; });
    return seen ? os::toWide(answer.path) : std::wstring();
}

}  // namespace comparer
