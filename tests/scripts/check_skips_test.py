"""Tests scripts/check-skips, on results as ctest and the test programs write them."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "check-skips"

CTEST = """<?xml version="1.0" encoding="UTF-8"?>
<testsuite name="(empty)" tests="4" failures="0" disabled="1" skipped="1">
 <testcase name="Page.IsSeen" classname="Page.IsSeen" time="0.1" status="notrun">
  <skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>
  <system-out>[ RUN      ] Page.IsSeen
page_test.cpp:9: Skipped
there is no browser
[  SKIPPED ] Page.IsSeen (0 ms)</system-out>
 </testcase>
 <testcase name="Page.HasATitle" classname="Page.HasATitle" time="0.1" status="run"><system-out/></testcase>
 <testcase name="Page.Prints" classname="Page.Prints" time="0" status="disabled">
  <system-out>Disabled</system-out>
 </testcase>
 <testcase name="All/Sizes.Fit/a4" classname="All/Sizes.Fit/a4" time="0" status="run"><system-out/></testcase>
</testsuite>
"""

PROGRAM = """<?xml version="1.0" encoding="UTF-8"?>
<testsuites tests="3" failures="0" disabled="1" errors="0" time="0,1" name="AllTests">
 <testsuite name="Page" tests="2">
  <testcase name="IsSeen" status="run" result="skipped" time="0" classname="Page">
   <skipped message="page_test.cpp:9&#x0A;there is no browser"><![CDATA[page_test.cpp:9
there is no browser]]></skipped>
  </testcase>
  <testcase name="HasATitle" status="run" result="completed" time="0" classname="Page"/>
  <testcase name="DISABLED_Prints" status="notrun" result="suppressed" time="0" classname="Page"/>
 </testsuite>
 <testsuite name="All/Sizes" tests="1">
  <testcase name="Fit/a4" value_param="a4" status="run" result="completed" time="0" classname="All/Sizes"/>
 </testsuite>
</testsuites>
"""


class CheckSkips(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = pathlib.Path(scratch.name)
        (self.root / "scripts").mkdir()
        (self.root / "tests").mkdir()
        (self.root / "results").mkdir()
        shutil.copy(SCRIPT, self.root / "scripts")

    def run_on(self, results, allowed, strict, listed_in="tests/allowed-skips.txt"):
        (self.root / "results" / "a.xml").write_text(results, encoding="utf-8")
        (self.root / listed_in).write_text("# comment\n\n" + allowed, encoding="utf-8")
        environment = {**os.environ, "ZM_STRICT_SKIPS": "1" if strict else "0"}
        own_list = [] if listed_in == "tests/allowed-skips.txt" else ["--list", self.root / listed_in]
        command = [sys.executable, self.root / "scripts" / "check-skips", *own_list, self.root / "results"]
        return subprocess.run(command, env=environment, capture_output=True, text=True, check=False)

    def test_a_skip_that_is_not_on_the_list_fails_with_its_name_and_reason(self):
        for results in (CTEST, PROGRAM):
            run = self.run_on(results, "Page.Prints | no printer\n", strict=True)
            self.assertEqual(run.returncode, 1)
            self.assertIn("  Page.IsSeen: there is no browser\n", run.stderr)
            self.assertNotIn("Prints", run.stderr)

    def test_a_disabled_test_counts_as_skipped(self):
        for results in (CTEST, PROGRAM):
            run = self.run_on(results, "Page.IsSeen | no browser\n", strict=True)
            self.assertEqual(run.returncode, 1)
            self.assertIn("  Page.Prints: disabled\n", run.stderr)

    def test_skips_on_the_list_pass_in_silence(self):
        for results in (CTEST, PROGRAM):
            run = self.run_on(results, "Page.IsS*n | no browser\nPage.*Prints | no printer\n", strict=True)
            self.assertEqual((run.returncode, run.stdout, run.stderr), (0, "", ""))

    def test_an_entry_for_a_test_that_ran_is_not_stale(self):
        run = self.run_on(PROGRAM, "Page.* | x\nAll/Sizes.Fit/a4 | no paper\n", strict=True)
        self.assertEqual((run.returncode, run.stderr), (0, ""))

    def test_an_entry_that_no_test_matches_fails_with_its_line(self):
        for results in (CTEST, PROGRAM):
            run = self.run_on(results, "Page.* | x\nPage.WasRenamed | no browser\n", strict=True)
            self.assertEqual(run.returncode, 1)
            self.assertIn("tests/allowed-skips.txt:4: Page.WasRenamed\n", run.stderr)
            self.assertNotIn("IsSeen", run.stderr)

    def test_what_a_script_may_leave_out_allows_no_test_and_is_not_stale(self):
        for results in (CTEST, PROGRAM):
            run = self.run_on(results, "Page.* | x\nPackage.OnABareSystem | scripts/check-package; no root\n", strict=True)
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            run = self.run_on(results, "Page.* | scripts/check-package; no root\n", strict=True)
            self.assertEqual(run.returncode, 1)

    def test_without_strictness_skips_are_told_and_pass(self):
        for results in (CTEST, PROGRAM):
            run = self.run_on(results, "Page.WasRenamed | no browser\n", strict=False)
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            self.assertIn("2 of 4 tests WERE SKIPPED", run.stdout)
            self.assertIn("  Page.IsSeen: there is no browser\n", run.stdout)

    def test_a_list_for_some_of_the_tests_takes_the_place_of_the_whole_one(self):
        (self.root / "tests" / "allowed-skips.txt").write_text("Page.* | x\n", encoding="utf-8")
        for results in (CTEST, PROGRAM):
            run = self.run_on(results, "Page.IsSeen | no browser\nOther.* | not built\n", strict=True, listed_in="tests/own.txt")
            self.assertEqual(run.returncode, 1)
            self.assertIn("no entry of tests/own.txt allows it:\n  Page.Prints: disabled\n", run.stderr)
            self.assertNotIn("Other", run.stderr)
            run = self.run_on(results, "Page.* | x\nOther.* | not built\n", strict=True, listed_in="tests/own.txt")
            self.assertEqual((run.returncode, run.stderr), (0, ""))

    def test_an_entry_without_a_reason_fails(self):
        run = self.run_on(CTEST, "Page.*\n", strict=True)
        self.assertEqual(run.returncode, 2)
        self.assertIn("tests/allowed-skips.txt:3:", run.stderr)

    def test_results_that_cannot_be_read_or_hold_no_test_fail(self):
        for results in ("", "<testsuites", "<testsuites/>"):
            for strict in (True, False):
                self.assertEqual(self.run_on(results, "", strict).returncode, 2)


if __name__ == "__main__":
    unittest.main()
