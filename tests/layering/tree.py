"""A throw-away source tree for the tools' own tests."""

import os
import subprocess
import sys
import tempfile
import unittest

TOOLS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools")


class TreeTest(unittest.TestCase):
    tool = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = os.path.realpath(folder.name)

    def write(self, path, text):
        full = os.path.join(self.root, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, "w", encoding="utf-8") as file:
            file.write(text)
        return full

    def run_tool(self, *arguments):
        """Exit code and output of the tool."""
        result = subprocess.run([sys.executable, os.path.join(TOOLS, self.tool), *arguments],
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                check=False)
        return result.returncode, result.stdout

    def assert_clean(self, *arguments):
        code, output = self.run_tool(*arguments)
        self.assertEqual(code, 0, output)
        return output

    def assert_caught(self, expected, *arguments):
        """The tool fails and says `expected`."""
        code, output = self.run_tool(*arguments)
        self.assertEqual(code, 1, output)
        self.assertIn(expected, output)
        return output
