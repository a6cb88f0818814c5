"""A stale drawing and a link against the layers are caught."""

from tree import TreeTest

FRAME = "# Title\n<!-- targets: drawn by tools/target_graph --update -->\n<!-- end of targets -->\nEnd\n"
GOOD = """platform\tSHARED_LIBRARY\tplatform\twarnings
extract\tSTATIC_LIBRARY\textract\tplatform;$<LINK_ONLY:warnings>
diff\tSTATIC_LIBRARY\tdiff\textract
backend_occt\tSTATIC_LIBRARY\tbackends/occt\tplatform;/usr/lib/libTKernel.so;/usr/lib/libTKMath.so.7
diff_test\tEXECUTABLE\ttests/unit/diff\tdiff;GTest::gtest_main
"""


class Cases(TreeTest):
    tool = "target_graph"

    def setUp(self):
        super().setUp()
        self.document = self.write("docs/02-architecture.md", FRAME)
        self.list = self.write("targets.tsv", GOOD)

    def check(self, mode="--check"):
        return (mode, self.list, "--root", self.root)

    def draw(self, text=GOOD):
        self.write("targets.tsv", text)
        self.assert_clean(*self.check("--update"))

    def read(self):
        with open(self.document, encoding="utf-8") as file:
            return file.read()

    def test_drawn_graph_is_good(self):
        self.draw()
        self.assertIn("5 targets, 0 problems", self.assert_clean(*self.check()))

    def test_drawing_keeps_the_rest_of_the_document(self):
        self.draw()
        self.assertTrue(self.read().startswith("# Title\n"))
        self.assertTrue(self.read().endswith("End\n"))

    def test_drawing_shows_targets_and_third_parties_without_tests(self):
        self.draw()
        self.assertIn("t_diff --> t_extract\n", self.read())
        self.assertEqual(self.read().count("t_backend_occt -.-> occt\n"), 1)
        self.assertNotIn("diff_test", self.read())

    def test_order_of_the_list_does_not_matter(self):
        self.draw()
        self.write("targets.tsv", "".join(sorted(GOOD.splitlines(True), reverse=True)))
        self.assert_clean(*self.check())

    def test_new_link_makes_the_drawing_stale(self):
        self.draw()
        self.write("targets.tsv", GOOD.replace("\textract\n", "\textract;platform\n"))
        self.assert_caught("out of date", *self.check())

    def test_missing_marks_are_caught(self):
        self.write("docs/02-architecture.md", "# Title\n")
        self.assert_caught("marks", *self.check())

    def test_link_upwards_is_caught(self):
        self.draw(GOOD.replace("extract\tplatform;", "extract\tdiff;"))
        self.assert_caught("extract links diff: extract may not include diff", *self.check())

    def test_third_party_of_another_folder_is_caught(self):
        self.draw(GOOD.replace("diff\textract", "diff\textract;/usr/lib/libTKernel.so"))
        self.assert_caught("diff links TKernel: diff may not use occt", *self.check())

    def test_unknown_library_is_caught(self):
        self.draw(GOOD.replace("diff\textract", "diff\textract;boost_system"))
        self.assert_caught("diff links boost_system: a library that", *self.check())

    def test_folder_without_a_row_is_caught(self):
        self.draw(GOOD + "more\tSTATIC_LIBRARY\tutilities\tplatform\n")
        self.assert_caught("more: folder utilities", *self.check())
