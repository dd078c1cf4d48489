"""tools/list-skipped on the output of tests that skip cases."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.join(os.environ["OLMKIT_SOURCE_DIR"], "tools", "list-skipped")

GOOGLETEST = """\
[ RUN      ] RowsTest.AreRead
[       OK ] RowsTest.AreRead (0 ms)
[ RUN      ] RowsTest.AreWritten
/src/RowsTest.cpp:12: Skipped
there is no archive

[  SKIPPED ] RowsTest.AreWritten (0 ms)
[  PASSED  ] 1 test.
[  SKIPPED ] 1 test, listed below:
[  SKIPPED ] RowsTest.AreWritten
"""

CASES = """
import unittest

class RowsTest(unittest.TestCase):
    def test_read(self):
        pass

    @unittest.skip("there is no 'archive'")
    def test_written(self):
        pass

    def test_described(self):
        \"\"\"With a line of its own.\"\"\"
        self.skipTest("nothing can be mounted")

unittest.main()
"""


class ListSkippedTest(unittest.TestCase):
    def listed(self, log):
        with tempfile.TemporaryDirectory() as build:
            file = pathlib.Path(build, "Testing/Temporary/LastTest.log")
            file.parent.mkdir(parents=True)
            file.write_text(log, encoding="utf-8")
            printed = subprocess.run([TOOL, build], check=True, capture_output=True,
                                     text=True).stdout
            return printed.replace(build, "build").splitlines()

    def test_case_of_googletest_is_named_once_with_its_reason(self):
        self.assertEqual(self.listed(GOOGLETEST), [
            "build: 1 test skipped", "  RowsTest.AreWritten: there is no archive"])

    def test_cases_of_unittest_are_named_with_their_reasons(self):
        log = subprocess.run([sys.executable, "-c", CASES, "-v"], check=True, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout

        self.assertEqual(self.listed(log), [
            "build: 2 tests skipped", "  RowsTest.test_described: nothing can be mounted",
            "  RowsTest.test_written: there is no 'archive'"])

    def test_run_without_skipped_cases_says_so(self):
        self.assertEqual(self.listed("[  PASSED  ] 7 tests.\n"), ["build: no tests skipped"])


if __name__ == "__main__":
    unittest.main()
