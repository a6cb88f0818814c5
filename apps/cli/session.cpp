#include "apps/cli/session.h"

#include <cerrno>
#include <memory>
#include <system_error>

#include "apps/cli/console_user.h"
#include "apps/cli/failure.h"
#include "apps/cli/host_services.h"
#include "apps/cli/interrupt.h"
#include "apps/cli/json_report.h"
#include "apps/cli/plugin_module.h"
#include "apps/cli/results_window.h"
#include "apps/cli/run_log.h"
#include "apps/cli/switches.h"
#include "apps/cli/text.h"
#include "apps/cli/text_report.h"
#include "backends/headless/application.h"
#include "backends/posix/posix.h"
#include "platform/exchange/services.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace cli {
namespace {

constexpr std::uint32_t kCompareCommand = 101;
constexpr int kSignalBase = 128;

/// What one run needs, in the order in which it comes to life.
struct Run {
    explicit Run(const Options& given)
        : options(given), console(progressIsWanted()), services(given, log) {}

    const Options& options;
    Console console;
    FileNames names;
    RunLog log{console, names};
    HostServices services;
    std::shared_ptr<ConsoleUser> user;
    std::shared_ptr<headless::Application> application;
};

void complain(Run& run, const std::string& text) {
    run.console.line("bextora: " + text);
}

/// Says why there is no result.
void explain(Run& run) {
    Failure failure;
    failure.paths = {run.options.referencePath, run.options.comparePath};
    const auto document = run.application->activeDocument();
    if (document) failure.openedFile = run.names.withGivenNames(os::toUtf8(document->path()));
    failure.statusText = run.names.withGivenNames(os::toUtf8(run.user->lastStatusText()));
    failure.reasonGiven = run.user->gaveReason();
    failure.causeLogged = !run.log.messages().empty();
    for (const std::string& sentence : explanation(failure)) complain(run, sentence);
}

bool keepResult(Run& run, const std::wstring& resultPath) {
    if (run.options.keepResult.empty()) return true;
    const auto& keep = bxtexchange::services().keepResult;
    const std::wstring error =
        keep ? keep(resultPath, os::toWide(run.options.keepResult)) : L"no way to keep a result";
    if (error.empty()) return true;
    complain(run, printable(error));
    return false;
}

/// What Copy gives, in the state of the dialog that the options ask for.
std::optional<std::string> copiedText(Run& run) {
    const ResultsWindow window(run.services.toolkit());
    if (run.options.openStructure) window.openStructure();
    if (run.options.sections.parts) window.openParts();
    const auto text = window.copy(run.services.clipboard());
    if (!text) complain(run, "nothing could be copied");
    return text ? std::optional(os::toUtf8(*text)) : std::nullopt;
}

bool saveReport(Run& run) {
    if (run.options.report.empty()) return true;
    const auto& writer = os::services().writer;
    writer->takeFailure();
    const bool pressed = ResultsWindow(run.services.toolkit()).save();
    const std::wstring& status = run.user->lastStatusText();
    if (!pressed || !saysThatAReportWasSaved(status)) {
        complain(run, printable(status));
        return false;
    }
    if (!writer->takeFailure()) return true;
    complain(run, printable(std::string_view(run.options.report)) + " could not be written whole");
    return false;
}

/// Puts the name that the user gave in place of a link into the rows of folder and name.
void nameAsGiven(const FileNames& names, std::vector<std::wstring>& values) {
    if (values.size() < 2) return;
    const std::string path = os::toUtf8(values[0] + L"/" + values[1]);
    const std::string given = names.withGivenNames(path);
    if (given == path) return;
    const std::size_t slash = given.rfind('/');
    values[0] = os::toWide(given.substr(0, slash));
    values[1] = os::toWide(given.substr(slash + 1));  // npos + 1 is 0
}

std::string reportText(const Run& run, const Findings& findings) {
    const Options& options = run.options;
    if (options.json) {
        return jsonReport(findings, options.changesOnly, options.exitOn, options.sections);
    }
    const bool colour =
        options.colour == Colour::Always || (options.colour == Colour::Auto && coloursAreWanted());
    return textReport(findings, {options.changesOnly, colour, options.geometry, options.sections});
}

int report(Run& run, bxtsg::SCCompareOutcome& outcome,
           const std::shared_ptr<headless::Document>& document) {
    // Before anybody looks at the outcome: that builds the trees, and the copied text shows
    // whether they are built.
    const auto copied = run.options.copy ? copiedText(run) : std::optional<std::string>("");
    const bool saved = saveReport(run);
    const auto geometry = document->getAs<bxtsg::SCGeometryResult>(bxtsg::code::GeometryResult);
    bxtsg::SectionsOutcome renamed;
    if (run.names.hasLinks()) {
        renamed = outcome.sections();
        nameAsGiven(run.names, renamed.fileInformation.referenceValues);
        nameAsGiven(run.names, renamed.fileInformation.compareValues);
    }
    const bxtsg::SectionsOutcome& lists = run.names.hasLinks() ? renamed : outcome.sections();
    Findings findings;
    findings.referenceName = run.options.referencePath;
    findings.compareName = run.options.comparePath;
    if (isSwitchedOn(lists, bxtsg::outcome_section::ProductStructure)) {
        findings.structure = &outcome.productStructure();
    }
    findings.lists = &lists;
    findings.geometry = geometry.get();
    findings.messages = run.log.messages();

    const std::string text = run.options.copy ? copied.value_or("") : reportText(run, findings);
    run.console.clearProgress();
    const bool kept = keepResult(run, document->path());
    if (!writeOutput(text)) {
        complain(run,
                 "standard output can't be written: " + std::generic_category().message(errno));
        return exit_code::Trouble;
    }
    if (!copied || !saved || !kept) return exit_code::Trouble;
    return exitCodeFor(count(findings), run.options.exitOn);
}

/// What the run left on the active document, as an exit code.
int conclude(Run& run) {
    if (const int signal = interrupted()) {
        run.console.clearProgress();
        complain(run, "interrupted");
        return kSignalBase + signal;
    }
    const auto document = run.application->activeDocument();
    const auto outcome =
        document ? document->getAs<bxtsg::SCCompareOutcome>(bxtsg::code::CompareOutcome) : nullptr;
    if (outcome && document->get(bxtsg::code::Compare)) {
        return report(run, *outcome, document);
    }
    run.console.clearProgress();
    explain(run);
    return exit_code::Trouble;
}

int compare(Run& run) {
    std::string error;
    const auto module = PluginModule::load(pluginPath(), error);
    if (!module) {
        complain(run, error);
        return exit_code::Trouble;
    }
    bxtui::IGUIPlugin& plugin = module->plugin();
    plugin.attachApplication(run.application);
    plugin.loadDefaultPreferences();
    run.application->addView(&plugin);
    plugin.onCommand(nullptr, kCompareCommand, run.application);
    const int exitCode = conclude(run);
    run.application->closeAll();
    run.application->removeView(&plugin);
    return exitCode;
}

}  // namespace

int runSession(const Options& options) {
    catchInterrupts();
    Run run(options);
    const ConsoleUser::Files files{run.names.typed(options.referencePath),
                                   run.names.typed(options.comparePath), options.report};
    for (const auto& [given, typed] : {std::pair(options.referencePath, files.reference),
                                       std::pair(options.comparePath, files.compare)}) {
        if (given.empty() || !typed.empty()) continue;
        complain(run, printable(std::string_view(given)) +
                          ": a name with a double quote needs a temporary folder, and none can "
                          "be made");
        return exit_code::Trouble;
    }
    run.user = std::make_shared<ConsoleUser>(files, run.console, run.names, options.status);
    run.application = std::make_shared<headless::Application>(run.user, fileFormats());
    run.services.installDesktop(run.user);
    return compare(run);
}

int runSwitches(const Options& options) {
    Console console(false);
    const os::Services machine = posix::makeServices({});
    std::shared_ptr<os::KeyStore> store = machine.keyStore;
    if (options.saveSwitches && !(store && storeSwitches(*store, options.switches))) {
        console.line("bextora: the switches can't be saved");
        return exit_code::Trouble;
    }
    if (!options.listSwitches) return exit_code::Same;
    if (!options.switches.empty()) {
        store = std::make_shared<SwitchOverlay>(store, options.switches);
    }
    return writeOutput(switchList(store.get())) ? exit_code::Same : exit_code::Trouble;
}

}  // namespace cli
