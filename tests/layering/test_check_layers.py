"""Every kind of forbidden include is caught, and nothing else."""

from tree import TreeTest


class Cases(TreeTest):
    tool = "check_layers"

    def setUp(self):
        super().setUp()
        for folder in ("platform/os", "platform/hps", "platform/bxt", "platform/exchange",
                       "platform/ui", "resources", "extract", "diff", "shell/settings", "reports",
                       "results", "workflow", "shell", "backends/prc", "backends/occt",
                       "backends/comparer", "tests/support", "samples", "bench"):
            self.write(folder + "/a.h", "#pragma once\n")

    def include(self, path, *lines):
        self.write(path, "".join(f"#include {line}\n" for line in lines))

    def assert_rule(self, path, line, rule, included):
        self.include(path, *(["<vector>"] * (line - 1)), included)
        output = self.assert_caught(f"{path}:{line}: [{rule}]", self.root)
        self.assertIn(" 1 violations", output)

    def assert_allowed(self, path, *included):
        self.include(path, *included)
        self.assert_clean(self.root)

    # What the table allows.

    def test_every_row_of_the_table_is_allowed(self):
        self.include("platform/exchange/b.h", '"platform/bxt/a.h"', '"platform/hps/a.h"',
                     '"platform/os/a.h"')
        self.include("extract/b.h", '"platform/exchange/a.h"', '"platform/ui/a.h"')
        self.include("diff/b.h", '"extract/a.h"', '"platform/hps/a.h"')
        self.include("shell/settings/b.h", '"resources/a.h"', '"platform/os/a.h"')
        self.include("reports/b.h", '"diff/a.h"', '"extract/a.h"', '"shell/settings/a.h"')
        self.include("results/b.h", '"reports/a.h"', '"diff/a.h"', '"resources/a.h"')
        self.include("workflow/b.h", '"results/a.h"', '"extract/a.h"', '"shell/settings/a.h"')
        self.include("shell/b.h", '"workflow/a.h"', '"diff/a.h"', '"shell/settings/a.h"')
        self.include("backends/comparer/b.h", '"backends/occt/a.h"', "<TopoDS_Shape.hxx>")
        self.include("backends/occt/b.h", '"backends/prc/a.h"', "<gp_Trsf.hxx>")
        self.include("backends/qt/b.h", '"backends/occt/a.h"', "<QWidget>", "<QtCore/QString>")
        self.include("backends/posix/b.h", "<unistd.h>", "<sys/wait.h>", "<dlfcn.h>")
        self.include("apps/cli/main.cpp", "<CLI/CLI.hpp>", "<nlohmann/json.hpp>",
                     '"backends/occt/a.h"', '"platform/bxt/a.h"')
        self.include("apps/viewer/main.cpp", "<QApplication>")
        self.include("reports/pdf/b.h", "<hpdf.h>", '"reports/a.h"')
        self.include("tests/unit/b.cpp", '"workflow/a.h"', "<gtest/gtest.h>", "<unistd.h>")
        self.include("bench/b.cpp", '"tests/support/a.h"', "<benchmark/benchmark.h>")
        self.assert_clean(self.root)

    def test_own_folder_is_allowed(self):
        self.assert_allowed("diff/b.h", '"diff/a.h"', "<vector>")

    def test_include_in_a_comment_is_none(self):
        self.write("extract/b.h", '/*\n#include "shell/a.h"\n*/\n// #include <unistd.h>\n')
        self.assert_clean(self.root)

    def test_template_of_a_generated_header_counts_as_the_header(self):
        self.write("apps/cli/version.h.in", "\n")
        self.assert_allowed("apps/cli/main.cpp", '"apps/cli/version.h"')

    # Arrows that point up.

    def test_extract_may_not_include_diff(self):
        self.assert_rule("extract/b.cpp", 3, "layer", '"diff/a.h"')

    def test_diff_may_not_include_results(self):
        self.assert_rule("diff/b.h", 1, "layer", '"results/a.h"')

    def test_results_may_not_include_workflow(self):
        self.assert_rule("results/b.h", 2, "layer", '"workflow/a.h"')

    def test_workflow_may_not_include_shell(self):
        self.assert_rule("workflow/b.cpp", 2, "layer", '"shell/a.h"')

    def test_settings_may_not_include_the_rest_of_shell(self):
        self.assert_rule("shell/settings/b.h", 1, "layer", '"shell/a.h"')

    def test_diff_may_not_include_settings(self):
        self.assert_rule("diff/b.h", 1, "layer", '"shell/settings/a.h"')

    def test_platform_may_not_include_the_product(self):
        self.assert_rule("platform/hps/b.h", 1, "layer", '"extract/a.h"')

    def test_lower_platform_folder_may_not_include_a_higher_one(self):
        self.assert_rule("platform/os/b.h", 1, "layer", '"platform/hps/a.h"')

    def test_ui_may_not_include_bxt(self):
        self.assert_rule("platform/ui/b.h", 1, "layer", '"platform/bxt/a.h"')

    def test_resources_may_not_include_extract(self):
        self.assert_rule("resources/b.h", 1, "layer", '"extract/a.h"')

    def test_backend_may_not_include_the_product(self):
        self.assert_rule("backends/comparer/b.cpp", 1, "layer", '"diff/a.h"')

    def test_backend_may_not_include_a_backend_beside_it(self):
        self.assert_rule("backends/occt/b.cpp", 1, "layer", '"backends/comparer/a.h"')

    def test_application_may_not_include_the_product(self):
        self.assert_rule("apps/cli/main.cpp", 1, "layer", '"workflow/a.h"')

    def test_product_may_not_include_a_backend(self):
        self.assert_rule("workflow/b.cpp", 1, "layer", '"backends/occt/a.h"')

    def test_product_may_not_include_tests(self):
        self.assert_rule("diff/b.cpp", 1, "layer", '"tests/support/a.h"')

    def test_samples_may_not_include_tests(self):
        self.assert_rule("samples/b.cpp", 1, "layer", '"tests/support/a.h"')

    # Third parties and the machine.

    def test_open_cascade_stays_in_its_backends(self):
        self.assert_rule("extract/b.cpp", 1, "third-party", "<TDF_Label.hxx>")

    def test_open_cascade_stays_out_of_the_applications(self):
        self.assert_rule("apps/helper/main.cpp", 1, "third-party", "<Standard.hxx>")

    def test_qt_stays_out_of_results(self):
        self.assert_rule("results/b.cpp", 1, "third-party", "<QTreeWidget>")

    def test_qt_module_path_is_seen_as_qt(self):
        self.assert_rule("backends/headless/b.cpp", 1, "third-party", "<QtWidgets/QLabel>")

    def test_cli11_stays_in_the_command_line(self):
        self.assert_rule("backends/headless/b.cpp", 1, "third-party", "<CLI/CLI.hpp>")

    def test_json_stays_in_the_command_line(self):
        self.assert_rule("backends/occt/b.cpp", 1, "third-party", "<nlohmann/json.hpp>")

    def test_pdf_library_stays_in_its_folder(self):
        self.assert_rule("reports/b.cpp", 1, "third-party", "<hpdf.h>")

    def test_os_header_stays_in_posix_and_applications(self):
        self.assert_rule("backends/occt/b.cpp", 1, "third-party", "<unistd.h>")

    def test_os_header_in_a_folder_is_caught(self):
        self.assert_rule("workflow/b.cpp", 1, "third-party", "<sys/stat.h>")

    def test_windows_header_is_caught(self):
        self.assert_rule("workflow/b.cpp", 1, "third-party", "<windows.h>")

    def test_test_framework_stays_in_tests(self):
        self.assert_rule("diff/b.cpp", 1, "third-party", "<gtest/gtest.h>")

    def test_threads_of_the_standard_library_stay_out_of_the_product(self):
        self.assert_rule("workflow/b.cpp", 1, "machine", "<thread>")

    def test_files_of_the_standard_library_stay_out_of_platform(self):
        self.assert_rule("platform/os/b.cpp", 1, "machine", "<filesystem>")

    # Forms.

    def test_unknown_header_is_an_error(self):
        self.assert_rule("diff/b.cpp", 1, "unknown-header", "<boost/any.hpp>")

    def test_header_of_ours_in_angle_brackets_is_an_error(self):
        self.assert_rule("diff/b.cpp", 1, "unknown-header", "<extract/a.h>")

    def test_path_that_is_not_from_the_root_is_an_error(self):
        self.assert_rule("diff/b.cpp", 1, "include-path", '"a.h"')

    def test_path_upwards_is_an_error(self):
        self.assert_rule("diff/b.cpp", 1, "include-path", '"../extract/a.h"')

    def test_include_of_a_macro_is_an_error(self):
        self.assert_rule("diff/b.cpp", 1, "include-form", "HEADER")

    def test_indented_directive_is_seen(self):
        self.write("extract/b.h", '#if 1\n  #  include "diff/a.h" // why not\n#endif\n')
        self.assert_caught("extract/b.h:2: [layer]", self.root)

    def test_own_header_comes_first(self):
        self.write("diff/b.h", "#pragma once\n")
        self.include("diff/b.cpp", '"extract/a.h"', '"diff/b.h"')
        self.assert_caught("diff/b.cpp:1: [own-header-first]", self.root)

    def test_folder_without_a_row_is_an_error(self):
        self.write("utilities/b.h", "#pragma once\n")
        self.assert_caught("utilities/b.h:1: [folder]", self.root)

    def test_every_violation_is_listed(self):
        self.include("extract/b.cpp", '"diff/a.h"', "<unistd.h>", '"shell/a.h"')
        code, output = self.run_tool(self.root)
        self.assertEqual(code, 1)
        self.assertIn("3 violations", output)

    def test_build_folder_is_not_looked_at(self):
        self.write("out/CMakeCache.txt", "\n")
        self.write("out/x.cpp", "#include <windows.h>\n")
        self.assert_clean(self.root)

    def test_empty_tree_is_trouble(self):
        code, _ = self.run_tool(self.root + "/tests/nowhere")
        self.assertEqual(code, 2)
