"""Libraries that export or need too much or too little are caught."""

import os
import subprocess

from tree import TreeTest

SOURCE = """
extern "C" __attribute__((visibility("default"))) int start() { return 0; }
extern "C" __attribute__((visibility("default"))) int extra() { return 0; }
"""


class Cases(TreeTest):
    tool = "check_symbols"

    def library(self, script, text=SOURCE, *flags):
        source = self.write("a.cpp", text)
        version = self.write("a.map", script)
        out = os.path.join(self.root, "a.so")
        subprocess.run([os.environ.get("CXX") or "c++", "-shared", "-fPIC", source, "-o", out,
                        f"-Wl,--version-script={version}", *flags], check=True)
        return out

    def test_expected_versioned_export_is_good(self):
        out = self.library("V_1 { global: start; local: *; };")
        self.assert_clean(out, "--exports", "start@@V_1")

    def test_further_export_is_caught(self):
        out = self.library("V_1 { global: start; extra; local: *; };")
        self.assert_caught("exports extra@@V_1", out, "--exports", "start@@V_1")

    def test_weak_template_export_is_caught(self):
        text = SOURCE + "template <class T> __attribute__((visibility(\"default\"))) int w(T) " \
                        "{ static int n; return ++n; }\ntemplate int w<int>(int);\n"
        out = self.library("V_1 { global: start; _Z*; local: *; };", text)
        self.assert_caught("exports _Z1wIiEiT_@@V_1", out, "--exports", "start@@V_1")

    def test_missing_export_is_caught(self):
        out = self.library("V_1 { global: start; local: *; };")
        self.assert_caught("does not export stop@@V_1", out, "--exports", "start@@V_1", "stop@@V_1")

    def test_missing_version_is_caught(self):
        out = self.library("{ global: start; local: *; };")
        self.assert_caught("does not export start@@V_1", out, "--exports", "start@@V_1")

    def test_other_version_is_caught(self):
        out = self.library("V_2 { global: start; local: *; };")
        self.assert_caught("exports start@@V_2", out, "--exports", "start@@V_1")

    def test_unexpected_library_is_caught(self):
        out = self.library("V_1 { global: start; local: *; };", SOURCE, "-Wl,--no-as-needed", "-lm")
        self.assert_caught("needs libm", out, "--exports", "start@@V_1", "--needs-only", "libc",
                           "libstdc++", "libgcc_s")

    def test_expected_libraries_are_good(self):
        out = self.library("V_1 { global: start; local: *; };", SOURCE, "-Wl,--no-as-needed", "-lm")
        self.assert_clean(out, "--exports", "start@@V_1", "--needs-only", "libc", "libstdc++",
                          "libgcc_s", "libm")

    def test_missing_file_is_caught(self):
        self.assert_caught("cannot be read", self.root + "/none.so", "--exports", "start@@V_1")
