#include "backends/comparer/comparer.h"

#include <deque>
#include <filesystem>
#include <fstream>
#include <map>

#include <gtest/gtest.h>

#include "platform/os/helper_messages.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace {

namespace fs = std::filesystem;
using Comparer = bxtimp::IDocComparer;
using Kind = os::HelperMessage::Kind;

/// What a helper process would say and how it would end.
struct Script {
    std::vector<os::HelperMessage> messages;
    os::ProcessEnd end = os::ProcessEnd::Exited;
    int exitCode = 0;
    bool writesFile = true;
};

class ScriptedProcess : public os::ChildProcess {
public:
    explicit ScriptedProcess(const Script& script) : script_(script) {}
    os::ProcessEnd poll() override {
        if (killed) return os::ProcessEnd::Killed;
        return waited_ ? script_.end : os::ProcessEnd::Running;
    }
    void wait(std::uint32_t) override {
        waited_ = true;
        if (onWait) onWait();
    }
    std::optional<std::string> nextLine() override {
        if (next_ >= script_.messages.size()) return std::nullopt;
        return os::formatHelperMessage(script_.messages[next_++]);
    }
    int exitCode() const override { return script_.exitCode; }
    void kill() override { killed = true; }

    bool killed = false;
    std::function<void()> onWait;

private:
    Script script_;
    bool waited_ = false;
    std::size_t next_ = 0;
};

class ScriptedProcesses : public os::ChildProcesses {
public:
    std::unique_ptr<os::ChildProcess> startHelper(const std::vector<std::string>& arguments,
                                                  const os::ProcessLimits&) override {
        started.push_back(arguments);
        auto process = std::make_unique<ScriptedProcess>(script);
        process->onWait = onWait;
        const auto out = std::find(arguments.begin(), arguments.end(), "--out");
        if (script.writesFile && out != arguments.end()) std::ofstream(*(out + 1)) << "result";
        return process;
    }
    Script script;
    std::function<void()> onWait;
    std::vector<std::vector<std::string>> started;
};

/// The token of a worker whose kill a test can time.
class TestToken : public os::RunToken {
public:
    bool valid() const override { return alive; }
    bool publish(const std::function<void()>& effect) override {
        if (alive) effect();
        return alive;
    }
    std::shared_ptr<void> onKill(std::function<void()> action) override {
        kill = std::move(action);
        return std::make_shared<int>();
    }
    void terminate() {
        alive = false;
        if (kill) kill();
    }
    bool alive = true;
    std::function<void()> kill;
};

class TestWorkers : public os::WorkerThreads {
public:
    std::unique_ptr<os::WorkerThread> start(std::function<std::uint32_t()>) override {
        return nullptr;
    }
    os::RunToken* current() override { return token; }
    os::RunToken* token = nullptr;
};

class TestFiles : public os::Files {
public:
    bool exists(const std::wstring&) const override { return false; }
    std::wstring executablePath() const override { return L""; }
    std::wstring tempFolder() const override { return L"/tmp/"; }
    wchar_t separator() const override { return L'/'; }
    std::wstring makePrivateFolder(const std::wstring&) override {
        if (refuse) return {};
        std::string pattern = (fs::temp_directory_path() / "comparer_test_XXXXXX").string();
        folders.emplace_back(::mkdtemp(pattern.data()));
        return os::toWide(folders.back());
    }
    ~TestFiles() override {
        std::error_code ignored;
        for (const std::string& folder : folders) fs::remove_all(folder, ignored);
    }
    bool refuse = false;
    std::vector<std::string> folders;
};

class TestImports : public occt::ImportService {
public:
    std::shared_ptr<HPS::Exchange::ImportTask> start(const std::string&,
                                                     const HPS::Exchange::ImportOptions&) override {
        return nullptr;
    }
    std::string documentFolder(const std::string& path,
                               HPS::Exchange::ImportCause& cause) override {
        asked.push_back(path);
        const auto failure = failures.find(path);
        if (failure == failures.end()) return "/documents/" + path;
        cause = {"missing", failure->second};
        return {};
    }
    void cancelAll() override {}
    std::vector<std::string> asked;
    std::map<std::string, std::string> failures;
};

class DocComparerTest : public testing::Test {
protected:
    void SetUp() override {
        os::services() = {};
        os::services().processes = processes;
        os::services().workers = workers;
        os::services().files = files;
        options.observer.progress = [this](double fraction, const std::string& phase) {
            progress.emplace_back(fraction, phase);
        };
        options.observer.log = [this](const std::string& text) { log.push_back(text); };
        processes->script.messages = {{Kind::Result, 0.0, "status", "0"}};
    }
    void TearDown() override { os::services() = {}; }

    std::wstring run() {
        bxtexchange::services() = comparer::makeServices(imports, options);
        bxtexchange::HOOPSDOCComparer subject(L"language folder");
        std::wstring path =
            subject.doComparision(nullptr, L"a.step", L"größe.step", nullptr, status);
        bxtexchange::services() = {};
        return path;
    }

    std::shared_ptr<ScriptedProcesses> processes = std::make_shared<ScriptedProcesses>();
    std::shared_ptr<TestWorkers> workers = std::make_shared<TestWorkers>();
    std::shared_ptr<TestFiles> files = std::make_shared<TestFiles>();
    std::shared_ptr<TestImports> imports = std::make_shared<TestImports>();
    comparer::Options options;
    Comparer::Status status = 99;
    std::vector<std::pair<double, std::string>> progress;
    std::vector<std::string> log;
};

TEST_F(DocComparerTest, DoneGivesThePathOfAResultOfItsOwn) {
    const std::wstring first = run();
    const std::wstring second = run();
    EXPECT_EQ(status, Comparer::Done);
    EXPECT_TRUE(fs::exists(os::toUtf8(first)));
    EXPECT_NE(fs::path(os::toUtf8(first)).stem(), fs::path(os::toUtf8(second)).stem());
    EXPECT_TRUE(log.empty());
}

TEST_F(DocComparerTest, HelperWorksOnTheKeptDocumentsOfBothFiles) {
    options.lengthToleranceMm = 0.25;
    run();
    EXPECT_EQ(imports->asked, (std::vector<std::string>{"a.step", "größe.step"}));
    ASSERT_EQ(processes->started.size(), 1U);
    const auto& arguments = processes->started[0];
    EXPECT_EQ(arguments[0], "compare");
    EXPECT_EQ(arguments[2], "/documents/a.step");
    EXPECT_EQ(arguments[4], "/documents/größe.step");
    EXPECT_EQ(arguments[7], "--length-tolerance");
    EXPECT_EQ(arguments[8], "0.25");
}

TEST_F(DocComparerTest, EveryStatusOfTheHelperIsPassedOnWithItsCause) {
    for (const Comparer::Status expected : {1, 2, -1, -2, -3}) {
        log.clear();
        processes->script.messages = {{Kind::Result, 0.0, "cause", "Why."},
                                      {Kind::Result, 0.0, "status", std::to_string(expected)}};
        EXPECT_TRUE(run().empty());
        EXPECT_EQ(status, expected);
        EXPECT_EQ(log, (std::vector<std::string>{"a.step and größe.step: Why."}));
    }
}

TEST_F(DocComparerTest, FailedImportComparesNothingAndNamesTheCause) {
    imports->failures["größe.step"] = "größe.step: there is no such file";
    EXPECT_TRUE(run().empty());
    EXPECT_EQ(status, Comparer::NothingCompared);
    EXPECT_EQ(log, (std::vector<std::string>{"größe.step: there is no such file"}));
    EXPECT_TRUE(processes->started.empty());
}

TEST_F(DocComparerTest, EveryEndOfTheHelperButAGoodOneIsNamed) {
    struct Row {
        os::ProcessEnd end;
        int code;
        std::string says;
    };
    const Row rows[] = {
        {os::ProcessEnd::Exited, 3, "exit code 3"},
        {os::ProcessEnd::Crashed, 11, "signal 11"},
        {os::ProcessEnd::TimeLimit, 0, "time limit"},
        {os::ProcessEnd::MemoryLimit, 0, "memory limit"},
        {os::ProcessEnd::NotStarted, 0, "could not be started"},
    };
    for (const Row& row : rows) {
        log.clear();
        status = 99;
        processes->script = {{}, row.end, row.code, false};
        EXPECT_TRUE(run().empty());
        EXPECT_EQ(status, Comparer::NothingCompared);
        ASSERT_EQ(log.size(), 1U);
        EXPECT_NE(log[0].find(row.says), std::string::npos) << log[0];
        EXPECT_NE(log[0].find("a.step and größe.step"), std::string::npos) << log[0];
    }
}

TEST_F(DocComparerTest, FailureThatTheHelperExplainedIsPassedOn) {
    processes->script = {
        {{Kind::Failure, 0.0, "unwritable", "can't write /x: No space left on device"}},
        os::ProcessEnd::Exited,
        1,
        false};
    run();
    ASSERT_EQ(log.size(), 1U);
    EXPECT_NE(log[0].find("No space left"), std::string::npos);
}

TEST_F(DocComparerTest, HelperWithoutAStatusIsAFailure) {
    for (const char* const text : {"", "x", "0x", "3", "-4", "99999999999"}) {
        processes->script.messages = {{Kind::Result, 0.0, "status", text}};
        EXPECT_TRUE(run().empty());
        EXPECT_EQ(status, Comparer::NothingCompared);
    }
}

TEST_F(DocComparerTest, StatusWithoutAFileIsAFailure) {
    processes->script.writesFile = false;
    EXPECT_TRUE(run().empty());
    EXPECT_EQ(status, Comparer::NothingCompared);
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(DocComparerTest, ProgressAndWarningsReachTheObserver) {
    processes->script.messages = {{Kind::Progress, 0.5, "matching", ""},
                                  {Kind::Partial, 0.0, "", "Two faces are missing."},
                                  {Kind::Result, 0.0, "status", "0"}};
    run();
    EXPECT_EQ(progress.back(), (std::pair<double, std::string>{0.5, "matching"}));
    EXPECT_EQ(log, (std::vector<std::string>{"Two faces are missing."}));
}

TEST_F(DocComparerTest, NoFolderForTheResultIsAFailure) {
    files->refuse = true;
    EXPECT_TRUE(run().empty());
    EXPECT_EQ(status, Comparer::NothingCompared);
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(DocComparerTest, KillEndsTheHelperAndLeavesTheStatusAlone) {
    TestToken token;
    workers->token = &token;
    processes->onWait = [&] { token.terminate(); };
    processes->script.messages = {{Kind::Progress, 0.5, "matching", ""},
                                  {Kind::Result, 0.0, "status", "0"}};
    EXPECT_TRUE(run().empty());
    EXPECT_EQ(status, 99);
    EXPECT_TRUE(log.empty());
    for (const auto& [fraction, phase] : progress) EXPECT_EQ(phase, "importing");
}

TEST_F(DocComparerTest, MissingPathsAreNoCrash) {
    bxtexchange::services() = comparer::makeServices(imports, options);
    bxtexchange::HOOPSDOCComparer subject(L"");
    EXPECT_TRUE(subject.doComparision(nullptr, nullptr, L"b", nullptr, status).empty());
    bxtexchange::services() = {};
}

TEST_F(DocComparerTest, KeepingTakesTheTwoFormsAndNamesFailures) {
    const auto services = comparer::makeServices(imports, options);
    const std::string folder = os::toUtf8(files->makePrivateFolder(L"keep"));
    const std::string result = folder + "/r.xbf";
    std::ofstream(result) << "content";
    const auto keep = [&](const std::string& target) {
        return os::toUtf8(services.keepResult(os::toWide(result), os::toWide(target)));
    };
    EXPECT_EQ(keep(folder + "/copy.XBF"), "");
    EXPECT_EQ(fs::file_size(folder + "/copy.XBF"), 7U);
    EXPECT_NE(keep("/nowhere/copy.xbf").find("/nowhere/copy.xbf"), std::string::npos);
    EXPECT_NE(keep(folder + "/copy.pdf"), "");
    EXPECT_TRUE(processes->started.empty());

    EXPECT_EQ(keep(folder + "/copy.glb"), "");
    ASSERT_EQ(processes->started.size(), 1U);
    EXPECT_EQ(processes->started[0][0], "keep");
    EXPECT_EQ(fs::file_size(folder + "/copy.glb"), 6U) << "what the helper wrote";
}

TEST_F(DocComparerTest, KeepingHelperWritesInAFolderOfItsOwnThatGoes) {
    const auto services = comparer::makeServices(imports, options);
    const std::string folder = os::toUtf8(files->makePrivateFolder(L"users"));
    const std::string result = folder + "/r.xbf";
    const std::string target = folder + "/copy.glb";
    std::ofstream(result) << "content";
    const auto keep = [&] {
        return os::toUtf8(services.keepResult(os::toWide(result), os::toWide(target)));
    };
    EXPECT_EQ(keep(), "");
    const auto& arguments = processes->started.at(0);
    const auto out = std::find(arguments.begin(), arguments.end(), "--out");
    ASSERT_NE(out, arguments.end());
    const fs::path own = fs::path(*(out + 1)).parent_path();
    EXPECT_EQ(own, files->folders.back());
    EXPECT_NE(own, folder);
    EXPECT_FALSE(fs::exists(own));

    // A helper that fails leaves what is there, whatever it wrote.
    fs::remove(target);
    std::ofstream(target) << "earlier";
    processes->script.exitCode = 1;
    EXPECT_NE(keep().find(target), std::string::npos);
    EXPECT_EQ(fs::file_size(target), 7U);
    EXPECT_FALSE(fs::exists(files->folders.back()));
    // So does one that says it is done and wrote nothing.
    processes->script.exitCode = 0;
    processes->script.writesFile = false;
    EXPECT_NE(keep().find(target), std::string::npos);
    EXPECT_EQ(fs::file_size(target), 7U);
    files->refuse = true;
    EXPECT_NE(keep().find("no temporary folder"), std::string::npos);
}

TEST_F(DocComparerTest, OtherFilesAreNoResults) {
    const auto services = comparer::makeServices(imports, options);
    EXPECT_FALSE(services.readResult(L"/nowhere/r.xbf"));
}

}  // namespace
