"""Every sign that lines of PMI are made of stands in the document with its code point."""

import os
import re
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
SOURCES = ("pmi_text.h", "pmi_text.cpp", "dimension.cpp", "tolerance.cpp", "pmi_annotation.cpp")


def read(*path):
    with open(os.path.join(ROOT, *path), encoding="utf-8") as file:
        return file.read()


class Cases(unittest.TestCase):
    def test_each_sign_is_documented(self):
        code = "".join(read("backends", "occt", "step", name) for name in SOURCES)
        signs = sorted(set(re.findall(r"\\u([0-9A-F]{4})", code)))
        self.assertGreater(len(signs), 30)
        rows = [row for row in read("docs", "07-pmi.md").split("\n") if row.startswith("|")]
        for sign in signs:
            shown = [row for row in rows if "U+" + sign in row and chr(int(sign, 16)) in row]
            self.assertTrue(shown, "U+" + sign)


if __name__ == "__main__":
    unittest.main()
