"""Headers that need others before them are caught; good ones are compiled once."""

import json
import os
import time

from tree import TreeTest


class Cases(TreeTest):
    tool = "check_headers"

    def setUp(self):
        super().setUp()
        self.compiler = os.environ.get("CXX") or "c++"
        self.write("diff/good.h", "#pragma once\n#include <string>\ninline std::string s() { return {}; }\n")
        self.write("diff/a.cpp", '#include "diff/good.h"\n')
        self.commands = [self.command("diff/a.cpp")]
        self.write_database()

    def command(self, source, *flags):
        file = os.path.join(self.root, source)
        words = ["ccache", self.compiler, *flags, "-std=c++20", "-Wall", "-Werror", f"-I{self.root}",
                 "-o", "a.o", "-c", file]
        return {"directory": self.build(), "file": file, "command": " ".join(words)}

    def build(self):
        return os.path.join(self.root, "build")

    def write_database(self):
        self.write("build/compile_commands.json", json.dumps(self.commands))

    def check(self):
        return ("--root", self.root, "--build-dir", self.build())

    def test_header_that_stands_alone_is_good(self):
        self.assertIn("1 headers, 1 compiled, 0 failed", self.assert_clean(*self.check()))

    def test_header_that_needs_another_is_caught(self):
        self.write("diff/bad.h", "#pragma once\nstd::string t();\n")
        self.assert_caught("diff/bad.h:1: [header-alone]", *self.check())

    def test_header_without_guard_is_caught(self):
        self.write("diff/bad.h", "struct Twice {};\n")
        self.assert_caught("diff/bad.h:1: [header-alone]", *self.check())

    def test_warning_in_a_header_is_caught(self):
        self.write("diff/bad.h", "#pragma once\ninline void f() { int unused; }\n")
        self.assert_caught("unused", *self.check())

    def test_flags_come_from_the_folders_own_target(self):
        self.write("extract/x.h", "#pragma once\n#ifndef EXTRACT\n#error wrong flags\n#endif\n")
        self.write("extract/x.cpp", "")
        self.commands.append(self.command("extract/x.cpp", "-DEXTRACT"))
        self.write_database()
        self.assert_clean(*self.check())

    def test_folder_of_headers_takes_the_flags_of_an_includer(self):
        self.write("contracts/x.h", "#pragma once\n")
        self.write("diff/a.cpp", '#include "contracts/x.h"\n')
        self.assertIn("2 headers", self.assert_clean(*self.check()))

    def test_header_that_nobody_compiles_sees_the_repository_alone(self):
        self.write("platform/os/a.cpp", "")
        self.write("outside/party.h", "")
        self.commands = [self.command("diff/a.cpp", f"-I{self.root}/outside"),
                         self.command("platform/os/a.cpp")]
        self.write_database()
        self.write("bench/x.h", '#pragma once\n#include "diff/good.h"\n')
        self.assert_clean(*self.check(), "bench/x.h")
        self.write("bench/y.h", "#pragma once\n#include <party.h>\n")
        self.assert_caught("bench/y.h:1: [header-alone]", *self.check(), "bench/y.h")

    def test_header_without_any_flags_is_caught(self):
        self.write("contracts/x.h", "#pragma once\n")
        self.assert_caught("contracts/x.h:1: [header-alone]", *self.check())

    def test_second_call_compiles_nothing(self):
        self.assert_clean(*self.check())
        self.assertIn("0 compiled", self.assert_clean(*self.check()))

    def test_changed_dependency_is_compiled_again(self):
        self.write("diff/top.h", '#pragma once\n#include "diff/good.h"\ninline auto u() { return s(); }\n')
        self.assert_clean(*self.check())
        time.sleep(0.02)
        self.write("diff/good.h", "#pragma once\n")
        self.assert_caught("diff/top.h:1: [header-alone]", *self.check())

    def test_changed_flags_compile_again(self):
        self.assert_clean(*self.check())
        self.commands = [self.command("diff/a.cpp", "-DX")]
        self.write_database()
        self.assertIn("1 compiled", self.assert_clean(*self.check()))

    def test_failure_is_reported_again(self):
        self.write("diff/bad.h", "#pragma once\nstd::string t();\n")
        self.assert_caught("1 failed", *self.check())
        self.assert_caught("1 failed", *self.check())
