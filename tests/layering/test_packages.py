"""Every package that set-up installs has its reason in the decisions."""

import os
import re
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


class Cases(unittest.TestCase):
    def read(self, path):
        with open(os.path.join(ROOT, path), encoding="utf-8") as file:
            return file.read()

    def packages(self):
        lines = (line.split("#")[0].strip() for line in self.read("tools/packages.txt").split("\n"))
        return [word for line in lines for word in line.split()]

    def test_each_package_has_a_reason(self):
        self.assertGreater(len(self.packages()), 5)
        rows = re.findall(r"^\| `([a-z0-9.+-]+)` \| (\S.*) \|$", self.read("docs/05-decisions.md"), re.M)
        reasons = dict(rows)
        self.assertEqual([p for p in self.packages() if p not in reasons], [])

    def test_each_reason_has_a_package(self):
        rows = re.findall(r"^\| `([a-z0-9.+-]+)` \|", self.read("docs/05-decisions.md"), re.M)
        self.assertEqual([p for p in rows if p not in self.packages()], [])
