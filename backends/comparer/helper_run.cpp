#include "backends/comparer/helper_run.h"

#include <memory>

#include "platform/os/helper_messages.h"
#include "platform/os/services.h"

namespace comparer {
namespace {

constexpr std::uint32_t kWaitMs = 250;

void take(const std::string& line, const HelperEvents& events, HelperOutcome& outcome) {
    const auto message = os::parseHelperMessage(line);
    if (!message) return;
    using Kind = os::HelperMessage::Kind;
    switch (message->kind) {
        case Kind::Progress:
            if (events.progress) events.progress(message->fraction, message->name);
            break;
        case Kind::Warning:
        case Kind::Partial:
            if (events.log) events.log(message->text);
            break;
        case Kind::Failure: outcome.cause = message->text; break;
        case Kind::Result: outcome.results[message->name] = message->text; break;
    }
}

std::string causeOf(os::ProcessEnd end, int code) {
    switch (end) {
        case os::ProcessEnd::Exited:
            return "The helper process failed with exit code " + std::to_string(code) + ".";
        case os::ProcessEnd::Crashed:
            return "The helper process was ended by signal " + std::to_string(code) + ".";
        case os::ProcessEnd::TimeLimit: return "The helper process reached its time limit.";
        case os::ProcessEnd::MemoryLimit: return "The helper process reached its memory limit.";
        case os::ProcessEnd::Forbidden:
            return "The helper process tried what no helper may, and was ended.";
        case os::ProcessEnd::NotStarted: return "The helper process could not be started.";
        case os::ProcessEnd::Running:
        case os::ProcessEnd::Killed: break;
    }
    return {};
}

}  // namespace

HelperOutcome runHelper(const std::vector<std::string>& arguments, const HelperEvents& events) {
    HelperOutcome outcome;
    auto& services = os::services();
    os::RunToken* const token = services.workers ? services.workers->current() : nullptr;
    const std::shared_ptr<os::ChildProcess> child =
        services.processes->startHelper(arguments, os::ProcessLimits{});
    std::shared_ptr<void> registration;
    if (token != nullptr) registration = token->onKill([child] { child->kill(); });

    const auto drain = [&] {
        while (const auto line = child->nextLine()) take(*line, events, outcome);
    };
    while ((outcome.end = child->poll()) == os::ProcessEnd::Running) {
        child->wait(kWaitMs);
        drain();
    }
    drain();
    outcome.good = outcome.end == os::ProcessEnd::Exited && child->exitCode() == 0;
    if (outcome.good) {
        outcome.cause.clear();
    } else if (outcome.cause.empty()) {
        outcome.cause = causeOf(outcome.end, child->exitCode());
    }
    return outcome;
}

}  // namespace comparer
