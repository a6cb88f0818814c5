#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class Command : public WorkflowTest {
protected:
    void command(std::uint32_t id = 101) { compare->onCommand(nullptr, id, host); }
};

TEST_F(Command, WithoutAnActiveFrameDoesNothing) {
    host->hideFrame = true;
    command();
    EXPECT_TRUE(log().entries().empty());
    EXPECT_EQ(state().compareJob->sourceFactory, nullptr);
}

TEST_F(Command, WithoutAnActiveFactoryDoesNothing) {
    host->hideFactory = true;
    command();
    EXPECT_TRUE(log().entries().empty());
}

TEST_F(Command, WithoutAnyDocumentDoesNothing) {
    host->activate(nullptr);
    log().clear();
    command();
    EXPECT_TRUE(log().entries().empty());
}

TEST_F(Command, WithoutAnApplicationDoesNothing) {
    compare->onCommand(nullptr, 101, nullptr);
    EXPECT_TRUE(log().entries().empty());
}

TEST_F(Command, NotesItsUseThenTakesTheSourceThenAsksForThePair) {
    std::shared_ptr<bxtsg::IFactory> sourceAtPrompt;
    services.toolkit->scripts.emplace_back(
        [&](support::FakeDialog::State&) { sourceAtPrompt = state().compareJob->sourceFactory; });
    command(77);
    EXPECT_EQ(log().entries(),
              (Entries{"noteCommand 77", "notePlugin Compare Plugin", "dialog103.modal",
                       "dialog103.result 2", "dialog103.delete"}));
    EXPECT_EQ(sourceAtPrompt, host->active->factory());
}

TEST_F(Command, EveryCommandIdStartsARun) {
    for (const std::uint32_t id : {101U, 210U, 0U, 4000000000U}) {
        log().clear();
        command(id);
        EXPECT_TRUE(log().contains("noteCommand " + std::to_string(id)));
        EXPECT_TRUE(log().contains("dialog103.modal"));
    }
}

TEST_F(Command, WithoutAStatusManagerNotesNothingAndRuns) {
    host->status.reset();
    command();
    EXPECT_EQ(log().count("note"), 0U);
    EXPECT_TRUE(log().contains("dialog103.modal"));
}

TEST_F(Command, InAResultDocumentOnlyRaisesTheDialog) {
    choosePair();
    command();
    ASSERT_TRUE(results());
    const auto sourceBefore = state().compareJob->sourceFactory;
    results()->visible = false;
    log().clear();
    command();
    EXPECT_EQ(log().entries(), (Entries{"dialog1300.show", "dialog1300.foreground"}));
    EXPECT_TRUE(results()->visible);
    EXPECT_EQ(state().compareJob->sourceFactory, sourceBefore);
}

TEST_F(Command, InAResultDocumentWithoutADialogDoesNothing) {
    activeDocument().schemas[29] = std::make_shared<bxtsg::SCComprae>();
    command();
    EXPECT_TRUE(log().entries().empty());
    EXPECT_EQ(state().resultsDialog, nullptr);
}

TEST_F(Command, InAResultDocumentWithADialogWithoutWindowDoesNothing) {
    choosePair();
    command();
    state().resultsDialog->DestroyWindow();
    log().clear();
    command();
    EXPECT_TRUE(log().entries().empty());
}

TEST_F(Command, ASchemaOfAnotherClassUnderTheCompareCodeIsNoResult) {
    activeDocument().schemas[29] = std::make_shared<bxtsg::SCInfo>(L"x");
    command();
    EXPECT_TRUE(log().contains("dialog103.modal"));
}

}  // namespace
