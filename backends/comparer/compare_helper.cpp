#include "backends/comparer/body_classes.h"
#include "backends/comparer/comparer.h"
#include "backends/comparer/face_report.h"
#include "backends/comparer/helper_support.h"
#include "backends/comparer/instances.h"
#include "backends/comparer/matching.h"
#include "backends/comparer/mesh_units.h"
#include "backends/comparer/result_document.h"
#include "backends/comparer/result_rows.h"
#include "backends/comparer/scene.h"
#include "backends/comparer/status.h"

namespace comparer {
namespace {

struct Task {
    std::string referenceFolder;
    std::string compareFolder;
    std::string out;
    Tolerances tolerances;
    Shortcuts shortcuts = Shortcuts::On;
    Effort effort;
};

std::optional<Task> taskFrom(const std::vector<std::string>& arguments) {
    const auto options = parseOptions(arguments);
    if (!options) return std::nullopt;
    const auto text = [&](const char* name) {
        const auto found = options->find(name);
        return found == options->end() ? std::string() : found->second;
    };
    const auto length = parsePositive(text("length-tolerance"));
    const auto relative = parsePositive(text("relative-tolerance"));
    const auto angle = parsePositive(text("angle-tolerance"));
    Task task{text("reference"), text("compare"), text("out"), {}, Shortcuts::On, {}};
    const bool complete =
        !task.referenceFolder.empty() && !task.compareFolder.empty() && !task.out.empty();
    if (!complete || !length || !relative || !angle) return std::nullopt;
    task.tolerances = {*length, *relative, *angle};
    if (text("shortcuts") == "off") task.shortcuts = Shortcuts::Off;
    if (options->contains("body-limit-s")) {
        const auto limit = parsePositive(text("body-limit-s"));
        if (!limit) return std::nullopt;
        task.effort.bodyTimeLimitS = *limit;
    }
    return task;
}

std::optional<Side> loadSide(const std::string& folder, Names& names, Reporter& reporter) {
    std::string error;
    const auto model = occt::Model::load(folder, error);
    if (!model) {
        reporter.failure("damaged", error);
        return std::nullopt;
    }
    return collectSide(*model, names);
}

bool compare(const Task& task, Reporter& reporter) {
    Names names;
    reporter.progress(0.0, "reading");
    auto reference = loadSide(task.referenceFolder, names, reporter);
    if (!reference) return false;
    reporter.progress(0.15, "reading");
    auto other = loadSide(task.compareFolder, names, reporter);
    if (!other) return false;

    std::string cause;
    const auto status = statusFor(*reference, *other, cause);
    if (status != bxtimp::IDocComparer::Done) {
        reporter.result("cause", cause);
        reporter.result("status", std::to_string(status));
        return true;
    }
    reporter.progress(0.3, "measuring");
    adoptUnits(*reference, *other);
    BodyClasses classes(*reference, *other, task.tolerances, task.shortcuts);
    reporter.progress(0.6, "matching");
    std::vector<Match> matches =
        matchInstances(*reference, *other, names, classes, task.tolerances,
                       [&](double part) { reporter.progress(0.6 + 0.1 * part, "matching"); });
    const FaceReport faces = compareFaces(
        *reference, *other, task.tolerances, matches,
        [&](double part) { reporter.progress(0.7 + 0.2 * part, "comparing faces"); }, task.effort);
    reporter.progress(0.9, "writing");
    const bxtsg::SCGeometryResult result =
        buildResult(*reference, *other, names, matches, task.tolerances, faces);
    const std::string error = writeResultDocument(
        buildScene(*reference, *other, names, matches, faces), result, task.out);
    if (!error.empty()) {
        reporter.failure("unwritable", error);
        return false;
    }
    reporter.progress(1.0, "writing");
    reporter.result("status", std::to_string(status));
    return true;
}

}  // namespace

int runCompareHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel,
                     os::Confinement* confinement) {
    Reporter reporter(channel);
    const auto task = taskFrom(arguments);
    if (!task) {
        reporter.failure("arguments", "The comparison was started with wrong arguments.");
        return 1;
    }
    os::confineHelper(confinement,
                      {{task->referenceFolder, task->compareFolder}, {folderOf(task->out)}},
                      channel);
    return runGuarded(reporter, [&] { return compare(*task, reporter); });
}

}  // namespace comparer
