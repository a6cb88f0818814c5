#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class MismatchMessage : public WorkflowTest {};

TEST_F(MismatchMessage, BoxComesBeforeTheStatusText) {
    workflow::CompareWorkflow::ShowPartAssemblyMismatch(host, L"R", L"C", true);
    EXPECT_EQ(log().entries(),
              (Entries{"box Compare Models | \"R\" is an assembly file.\n\"C\" is a part file."
                       "\n\nComparing a part with an assembly is not supported. | " +
                           std::to_string(0x50010),
                       "status Ready"}));
}

TEST_F(MismatchMessage, WithoutAToolkitOnlyTheStatusTextIsShown) {
    ui::services().toolkit.reset();
    workflow::CompareWorkflow::ShowPartAssemblyMismatch(host, L"R", L"C", false);
    EXPECT_EQ(log().entries(), Entries{"status Ready"});
}

}  // namespace
