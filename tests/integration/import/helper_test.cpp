// The helper process of an import: its phases, its end, and what it says about a file.

#include <signal.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "platform/hps/component_type.h"
#include "platform/os/services.h"
#include "tests/integration/import/imports.h"
#include "tests/integration/import/small_files.h"
#include "tests/support/real_data.h"
#include "tests/support/step_builder.h"
#include "tests/support/step_text.h"

namespace {

namespace Type = HPS::ComponentType;
using HPS::IOResult;
using import_test::Imported;
using Texts = std::vector<std::string>;

/// Helpers of this process that run; a process that has only just been made counts.
std::vector<pid_t> helpers() {
    std::vector<pid_t> found;
    for (const pid_t process : support::descendantsOf(getpid())) {
        if (support::programOf(process).find("bextora-helper") != std::string::npos) {
            found.push_back(process);
        }
    }
    return found;
}

bool noneLeft() {
    for (int i = 0; i < 500 && !helpers().empty(); ++i) os::services().clock->sleepMs(10);
    return helpers().empty();
}

class ImportHelper : public import_test::Imports {
protected:
    /// Kills the helper as soon as it can be seen.
    Imported importAndKill(const std::string& path) {
        const auto notifier = start(path);
        float fraction = 0.0F;
        while (helpers().empty() && notifier.Status(fraction) == IOResult::InProgress) {
            os::services().clock->sleepMs(1);
        }
        for (const pid_t process : helpers()) ::kill(process, SIGKILL);
        return finish(notifier);
    }
    bool wasLogged(const std::string& text) const {
        return std::find(logged.begin(), logged.end(), text) != logged.end();
    }
};

TEST_F(ImportHelper, PhasesAreNamedInOrderAndProgressRises) {
    ASSERT_EQ(import(support::realFile("Gearbox1")).result, IOResult::Success);
    Texts phases;
    double last = 0.0;
    for (const auto& [fraction, phase] : progress) {
        EXPECT_GE(fraction, last);
        EXPECT_LE(fraction, 1.0);
        last = fraction;
        if (phases.empty() || phases.back() != phase) phases.push_back(phase);
    }
    EXPECT_EQ(phases, (Texts{"reading", "translating", "measuring", "writing"}));
    EXPECT_GT(progress.size(), 8U) << "a user sees it move";
    EXPECT_TRUE(noneLeft());
}

TEST_F(ImportHelper, AKilledHelperIsACrashWithItsSignal) {
    const std::string path = support::realFile("Gearbox1");
    const Imported read = importAndKill(path);
    EXPECT_EQ(read.result, IOResult::Failure);
    EXPECT_TRUE(read.component.Empty());
    EXPECT_EQ(read.cause.code, "crashed");
    EXPECT_EQ(read.cause.text.find("The import of " + path + " failed: the reader crashed while "),
              0U)
        << read.cause.text;
    EXPECT_NE(read.cause.text.find("(signal 9)."), std::string::npos) << read.cause.text;
    EXPECT_TRUE(wasLogged(read.cause.text));
    EXPECT_TRUE(noneLeft());
    EXPECT_EQ(import(path).result, IOResult::Success) << "the next one is an import of its own";
}

TEST_F(ImportHelper, CancelLeavesNoProcess) {
    const auto notifier = start(support::realFile("Gearbox1"));
    float fraction = 0.0F;
    while (helpers().empty() && notifier.Status(fraction) == IOResult::InProgress) {
        os::services().clock->sleepMs(1);
    }
    notifier.Cancel();
    EXPECT_EQ(notifier.Status(fraction), IOResult::Canceled);
    EXPECT_TRUE(noneLeft());
}

TEST_F(ImportHelper, TwoImportsRunSideBySide) {
    const auto one = start(support::realFile("Gearbox1"));
    const auto other = start(support::realFile("Gearbox2"));
    float fraction = 0.0F;
    std::size_t most = 0;
    while (most < 2 && one.Status(fraction) == IOResult::InProgress &&
           other.Status(fraction) == IOResult::InProgress) {
        most = std::max(most, helpers().size());
    }
    EXPECT_EQ(most, 2U);
    EXPECT_EQ(finish(one).result, IOResult::Success);
    EXPECT_EQ(finish(other).result, IOResult::Success);
}

TEST_F(ImportHelper, CausesOfFilesThatCantBeRead) {
    const std::string folder = scratch.path().string();
    const std::string empty = scratch.write("empty.step", "");
    const std::string other = scratch.write("other.step", "One cube, please.\n");
    const std::string hollow = scratch.write("hollow.step", "solid cube\n");
    const std::string none =
        scratch.write("none.step", "ISO-10303-21;\nHEADER;\nENDSEC;\nDATA;\n#1=CIRCLE('',#2,\n");
    const std::string nothing = scratch.write(
        "nothing.step",
        "ISO-10303-21;\nHEADER;\nFILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\nDATA;\n"
        "#1=APPLICATION_CONTEXT('x');\nENDSEC;\nEND-ISO-10303-21;\n");
    struct Row {
        std::string path;
        IOResult result;
        const char* code;
        std::string text;
    };
    const Row rows[] = {
        {folder + "/gone.step", IOResult::FileNotFound, "missing",
         folder + "/gone.step does not exist."},
        {folder, IOResult::Failure, "unreadable", folder + " is a folder, not a file."},
        {"/dev/null", IOResult::Failure, "unreadable", "/dev/null is not a regular file."},
        {empty, IOResult::Failure, "unreadable", empty + " is empty."},
        {other, IOResult::Failure, "not-this-format",
         other + " is no STEP file: it does not begin with ISO-10303-21."},
        {hollow, IOResult::Failure, "empty", hollow + " holds no triangles."},
        {none, IOResult::Failure, "damaged", none + " is damaged: line 5 cannot be read."},
        {nothing, IOResult::Failure, "damaged",
         nothing + " is damaged: it holds neither a product nor a shape that can be read."},
    };
    for (const Row& row : rows) {
        const Imported read = import(row.path);
        EXPECT_EQ(read.result, row.result) << row.path;
        EXPECT_EQ(read.cause.code, row.code);
        EXPECT_EQ(read.cause.text, row.text);
        EXPECT_TRUE(wasLogged(row.text));
    }
}

TEST_F(ImportHelper, APartialImportIsReportedWithCounts) {
    support::StepBuilder builder;
    const std::size_t block = builder.addBox("block", {10, 20, 30});
    const std::size_t top = builder.addAssembly("top");
    for (int i = 0; i < 3; ++i) builder.use(top, block, {20.0 * i, 0, 0});
    auto text = support::StepText::parse(builder.write());
    ASSERT_TRUE(text);
    for (auto& entity : text->entities) {
        if (entity.text.find("NEXT_ASSEMBLY_USAGE_OCCURRENCE") == std::string::npos) continue;
        // The last of the usages refers to a product that is not there.
        entity.text.replace(entity.text.rfind('#'), entity.text.rfind(',') - entity.text.rfind('#'),
                            "#99999");
        break;
    }
    const std::string path = scratch.write("partial.step", text->write());
    const Imported read = import(path);
    ASSERT_EQ(read.result, IOResult::Success) << read.cause.text;
    EXPECT_EQ(import_test::count(read, Type::ProductOccurrence), 3U);
    ASSERT_EQ(read.model->gaps().size(), 2U);
    EXPECT_EQ(read.model->gaps()[0].find("1 reference leads to entities that the file does not "
                                         "hold, the first in line "),
              0U)
        << read.model->gaps()[0];
    EXPECT_EQ(read.model->gaps()[1], "2 of 3 usages of products were translated.");
    EXPECT_TRUE(wasLogged(path + ": 2 of 3 usages of products were translated."));
}

TEST_F(ImportHelper, FacesThatAreLostAreCounted) {
    auto text = support::StepText::parse(import_test::boxFile());
    ASSERT_TRUE(text);
    for (auto& entity : text->entities) {
        // A face on a curve is none.
        if (entity.text.find("ADVANCED_FACE") == std::string::npos) continue;
        const auto numbers = support::entityReferences(entity.text);
        const std::string surface = "#" + std::to_string(numbers.back());
        entity.text.replace(entity.text.rfind(surface), surface.size(), "$");
        break;
    }
    const Imported read = import(scratch.write("faces.step", text->write()));
    ASSERT_EQ(read.result, IOResult::Success) << read.cause.text;
    ASSERT_FALSE(read.model->gaps().empty());
    EXPECT_EQ(read.model->gaps().back(), "5 of 6 faces were translated.");
}

TEST_F(ImportHelper, RepeatedNumbersAreReported) {
    std::string text = import_test::boxFile();
    text.insert(text.rfind("ENDSEC;"), "#1=APPLICATION_CONTEXT('again');\n");
    const Imported read = import(scratch.write("twice.step", text));
    ASSERT_EQ(read.result, IOResult::Success) << read.cause.text;
    ASSERT_EQ(read.model->gaps().size(), 1U);
    EXPECT_EQ(read.model->gaps()[0].find("1 entity has the number of another one"), 0U);
}

TEST_F(ImportHelper, FilesStartWithAByteOrderMarkAtTimes) {
    const Imported read =
        import(scratch.write("bom.step", "\xEF\xBB\xBF" + import_test::boxFile()));
    ASSERT_EQ(read.result, IOResult::Success) << read.cause.text;
    EXPECT_EQ(import_test::count(read, Type::BrepModel), 1U);
}

/// The program itself, as nobody should start it.
TEST(HelperProgram, WrongArgumentsAreRefused) {
    const auto folder = std::filesystem::path(support::programPath()).parent_path();
    const auto exitCode = [&](const std::vector<std::string>& arguments) {
        support::CliRequest request;
        request.arguments = arguments;
        return support::runProgram((folder / "bextora-helper").string(), request);
    };
    const auto nothing = exitCode({});
    EXPECT_EQ(nothing.exitCode, 2);
    EXPECT_NE(nothing.standardError.find("started by others"), std::string::npos);
    const auto unknown = exitCode({"explode"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_NE(unknown.standardError.find("unknown command explode"), std::string::npos);
    for (const auto& arguments :
         {Texts{"import"}, Texts{"import", "--in", "x", "--out"},
          Texts{"import", "--in", "x", "--out", "/tmp", "--options", "rubbish"}}) {
        EXPECT_EQ(exitCode(arguments).exitCode, 1);
    }
}

}  // namespace
