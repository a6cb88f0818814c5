"""Every house rule is caught where it is broken, and stays silent where it is not."""

from tree import TreeTest

# In pieces, so that this file passes the rules that it tests.
OUTSIDE = "as the spe" + "c says"
LATER = "// TO" + "DO: more\n"


def function(name, lines):
    return f"int {name}() {{\n" + "    step();\n" * (lines - 2) + "}\n"


class Cases(TreeTest):
    tool = "check_house"

    def setUp(self):
        super().setUp()
        self.write("diff/good.h", "#pragma once\n\nint good();\n")

    def assert_rule(self, path, text, line, rule):
        self.write(path, text)
        output = self.assert_caught(f"{path}:{line}: [{rule}]", self.root)
        self.assertIn(" 1 violations", output)

    def assert_good(self, path, text):
        self.write(path, text)
        self.assert_clean(self.root)

    def test_good_tree_is_clean(self):
        self.assert_clean(self.root)

    # Lengths.

    def test_source_of_600_lines_is_good(self):
        self.assert_good("diff/b.cpp", "int x;\n" * 600)

    def test_source_of_601_lines_is_caught(self):
        self.assert_rule("diff/b.cpp", "int x;\n" * 601, 601, "file-length")

    def test_header_of_300_lines_is_good(self):
        self.assert_good("diff/b.h", "#pragma once\n" + "int x;\n" * 299)

    def test_header_of_301_lines_is_caught(self):
        self.assert_rule("diff/b.h", "#pragma once\n" + "int x;\n" * 300, 301, "file-length")

    def test_function_of_80_lines_is_good(self):
        self.assert_good("diff/b.cpp", function("f", 80))

    def test_function_of_81_lines_is_caught(self):
        self.assert_rule("diff/b.cpp", "\n" + function("f", 81), 2, "function-length")

    def test_long_function_warns_without_failing(self):
        self.write("diff/b.cpp", function("f", 41))
        self.assertIn("[long-function] f has 41 lines", self.assert_clean(self.root))

    def test_method_in_a_class_in_a_namespace_is_measured(self):
        body = "namespace a::b {\nclass C final : public D {\npublic:\n" + function("m", 90)
        self.assert_rule("diff/b.cpp", body + "};\n}\n", 4, "function-length")

    def test_lambda_counts_with_its_function(self):
        text = "void f() {\n    call([] {\n" + "        g();\n" * 80 + "    });\n}\n"
        self.assert_rule("diff/b.cpp", text, 1, "function-length")

    def test_constructor_with_braced_members_is_measured(self):
        text = "C::C(int n)\n    : a_{n}, b_{{1, 2}} {\n" + "    g();\n" * 80 + "}\n"
        self.assert_rule("diff/b.cpp", text, 1, "function-length")

    def test_template_and_trailing_return_are_measured(self):
        text = "template <class T = std::vector<int>>\nauto f(T t) -> int {\n" + "g();\n" * 80 + "}\n"
        self.assert_rule("diff/b.cpp", text, 1, "function-length")

    def test_case_of_a_test_is_measured(self):
        text = "TEST(Diff, Long) {\n" + "    g();\n" * 80 + "}\n"
        self.assert_rule("tests/unit/b.cpp", text, 1, "function-length")

    def test_table_is_no_function(self):
        rows = '    {1, L"{("},\n' * 90
        self.assert_good("diff/b.cpp", "constexpr Row kRows[sizeof(int)] = {\n" + rows + "};\n")

    def test_class_is_no_function(self):
        self.assert_good("diff/b.h",
                         "#pragma once\nstruct alignas(8) A {\n" + "    int x();\n" * 90 + "};\n")

    def test_enumeration_is_no_function(self):
        self.assert_good("diff/b.cpp", "enum class E : int {\n" + "    x,\n" * 90 + "};\n")

    def test_braces_in_literals_and_comments_do_not_count(self):
        text = ('int f() {\n    g("{", \'{\', R"x({ " {)x");  // {\n    /* { */ return 1\'000;\n}\n'
                + "int x;\n" * 90)
        self.assert_good("diff/b.cpp", text)

    def test_branches_of_the_preprocessor_keep_the_braces_balanced(self):
        text = "#if A\nint f(int x) {\n#else\nint f(long x) {\n#endif\n    return 1;\n}\n"
        self.assert_good("diff/b.cpp", text + "int x;\n" * 90)

    def test_unbalanced_braces_are_reported(self):
        self.assert_rule("diff/b.cpp", "int f() {\n", 1, "function-length")

    # Words and characters.

    def test_outside_paper_in_a_comment_is_caught(self):
        self.assert_rule("diff/b.cpp", f"int x;\n// {OUTSIDE}\n", 2, "outside-paper")

    def test_outside_paper_in_a_document_is_caught(self):
        self.assert_rule("docs/a.md", f"Good\n\n{OUTSIDE}\n", 3, "outside-paper")

    def test_outside_paper_in_a_script_without_extension_is_caught(self):
        self.assert_rule("tools/thing", f"#!/bin/sh\n# {OUTSIDE}\n", 2, "outside-paper")

    def test_numbered_chapter_of_a_paper_is_caught(self):
        self.assert_rule("diff/b.cpp", "// see Par" + "t 3.1\n", 1, "outside-paper")

    def test_path_of_a_working_place_is_caught(self):
        self.assert_rule("diff/b.cpp", '// "/wor' + 'k/shared/a"\n', 1, "outside-paper")

    def test_special_and_inspect_are_good_words(self):
        self.assert_good("diff/b.cpp", "// A special case to inspect; specify it. Part 3 of 4.\n")

    def test_unfinished_mark_is_caught(self):
        self.assert_rule("diff/b.cpp", LATER, 1, "unfinished")

    def test_disabled_test_is_caught(self):
        self.assert_rule("tests/unit/b.cpp", "TEST(A, DISA" + "BLED_B) {}\n", 1, "unfinished")

    def test_non_ascii_source_is_caught(self):
        self.assert_rule("diff/b.cpp", '// caf\u00e9\n', 1, "ascii")

    def test_non_ascii_is_good_in_resources_samples_tests_and_documents(self):
        for path in ("resources/b.cpp", "samples/b.cpp", "tests/unit/b.cpp", "docs/b.md",
                     "README.md"):
            self.write(path, "// caf\u00e9\n")
        self.assert_clean(self.root)

    def test_blank_at_the_end_of_a_line_is_caught(self):
        self.assert_rule("diff/b.cpp", "int x; \n", 1, "whitespace")

    def test_carriage_return_is_caught(self):
        with open(self.write("diff/b.cpp", ""), "wb") as file:
            file.write(b"int x;\r\n")
        self.assert_caught("diff/b.cpp:1: [whitespace]", self.root)

    def test_missing_line_feed_at_the_end_is_caught(self):
        self.assert_rule("diff/b.cpp", "int x;", 1, "whitespace")

    # Code.

    def test_header_without_guard_is_caught(self):
        self.assert_rule("diff/b.h", "int x();\n", 1, "pragma-once")

    def test_guard_in_a_comment_is_none(self):
        self.assert_rule("diff/b.h", "/*\n#pragma once\n*/\n", 1, "pragma-once")

    def test_throw_in_the_product_is_caught(self):
        self.assert_rule("workflow/b.cpp", "void f() { throw 1; }\n", 1, "throw")

    def test_throw_in_a_comment_text_or_backend_is_good(self):
        self.write("backends/occt/b.cpp", "void f() { throw 1; }\n")
        self.assert_good("workflow/b.cpp", '// may throw\nauto t = "throw";\n')

    def test_number_read_in_the_process_locale_is_caught(self):
        self.assert_rule("extract/b.cpp", "double d = std::stod(text);\n", 1, "locale")

    def test_number_printed_in_the_process_locale_is_caught(self):
        self.assert_rule("backends/occt/b.cpp", 'x = std::snprintf(b, n, "%.3f", d);\n', 1, "locale")

    def test_whole_number_printed_is_good(self):
        self.assert_good("backends/occt/b.cpp", 'x = std::snprintf(b, n, "%d %s", d, s);\n')

    def test_locale_calls_are_good_in_tests(self):
        self.assert_good("tests/unit/b.cpp", 'auto x = setlocale(LC_ALL, "tr_TR.UTF-8");\n')

    def test_using_namespace_in_a_header_is_caught(self):
        self.assert_rule("diff/b.h", "#pragma once\nusing namespace extract;\n", 2,
                         "using-namespace")

    def test_using_namespace_in_a_source_is_good(self):
        self.assert_good("tests/unit/b.cpp", "using namespace extract;\n")

    def test_globbed_source_list_is_caught(self):
        self.assert_rule("diff/CMakeLists.txt", "file(GLOB all *.cpp)\n", 1, "glob")

    def test_many_includes_warn_without_failing(self):
        self.write("diff/b.h", "#pragma once\n" + "#include <vector>\n" * 8)
        self.assertIn("[include-count] 8 includes", self.assert_clean(self.root))

    # Data.

    def test_models_and_binary_files_are_not_text(self):
        self.write("samples/a.stp", OUTSIDE)
        with open(self.write("samples/b", ""), "wb") as file:
            file.write(b"\0" + OUTSIDE.encode())
        self.assert_clean(self.root)

    def test_numbers_are_printed_on_request(self):
        self.write("diff/b.cpp", function("f", 10))
        output = self.assert_clean("--numbers", self.root)
        self.assertRegex(output, r"lines of a function +1 +10")
