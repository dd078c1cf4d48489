"""Each system call of the program fails once: the result is whole, or the failure is reported."""

import filecmp
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor

BINARIES = os.environ["OLMKIT_BINARY_DIR"]
PROGRAM = os.path.join(BINARIES, "bin", "olmkit")
LIBRARY = os.path.join(BINARIES, "tests", "hostile", "libfailing_calls.so")
SAMPLE = os.path.join(os.environ["OLMKIT_SOURCE_DIR"], "examples", "sample.olm")
KINDS = ["read", "write", "open", "rename", "mkdir", "fsync"]
UNREADABLE = 3
MOST_CALLS = 2000  # a sweep that gets here has no end


def files_below(folder):
    return {os.path.relpath(os.path.join(path, name), folder)
            for path, _, names in os.walk(folder) for name in names}


class FailingCallsTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="olmkit-test-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def run_program(self, name, arguments, **environment):
        """Runs it in a folder of its own, and returns the process and the folder."""
        folder = os.path.join(self.folder, name)
        os.mkdir(folder)
        done = subprocess.run([PROGRAM, *arguments], cwd=folder, capture_output=True, timeout=60,
                              env={**os.environ, **environment}, check=False)
        return done, folder

    def run_failing(self, arguments, kind, number):
        """Returns None when the program has fewer calls, else what is wrong with the run."""
        mark = os.path.join(self.folder, f"{kind}-{number}.mark")
        done, folder = self.run_program(f"{kind}-{number}", arguments, LD_PRELOAD=LIBRARY,
                                        FAILING_CALL=f"{kind}:{number}", FAILED_CALL=mark)
        try:
            if not os.path.exists(mark):
                return None
            with open(mark, encoding="utf-8") as file:
                path = file.read()
            wrong = self.judge(done, folder, kind, path)
            return f"{kind} {number} of {path}: {wrong}: {done.stderr!r}" if wrong else ""
        finally:
            shutil.rmtree(folder)

    def judge(self, done, folder, kind, path):
        """Returns what is wrong with a run of which a call failed; empty when nothing is."""
        made = files_below(folder)
        wanted = files_below(self.whole_folder)
        for name in made & wanted:
            if name.endswith((".msg", ".html")) and not filecmp.cmp(
                    os.path.join(folder, name), os.path.join(self.whole_folder, name), False):
                return f"{name} differs"
        if done.returncode < 0:
            return f"ended by signal {-done.returncode}"
        if done.returncode == 0:
            if done.stdout != self.whole.stdout:
                return "another output, not reported"
            return "" if wanted <= made else f"{wanted - made} is missing, not reported"
        if not done.stderr:
            return f"exit code {done.returncode} without a message"
        if kind == "read" and path == SAMPLE and (
                done.returncode != UNREADABLE or
                f"{SAMPLE}: ".encode() not in done.stderr or
                b"can't be read: Input/output error" not in done.stderr):
            return f"exit code {done.returncode} for an archive that can't be read"
        return ""

    def sweep(self, *arguments):
        self.whole, self.whole_folder = self.run_program("whole", arguments)
        self.assertEqual(self.whole.returncode, 0, self.whole.stderr)
        wrong = []
        reads = 0
        with ThreadPoolExecutor(2) as pool:
            for kind in KINDS:
                for first in range(1, MOST_CALLS, 8):
                    runs = list(pool.map(lambda number, kind=kind: self.run_failing(
                        arguments, kind, number), range(first, first + 8)))
                    wrong += [run for run in runs if run]
                    reads += kind == "read" and sum(run is not None for run in runs)
                    if None in runs:
                        break
                else:
                    self.fail(f"{kind} calls without end")
        self.assertGreater(reads, 2, "the library was not loaded")
        self.assertEqual(wrong, [])

    def test_list(self):
        self.sweep("list", "--format", "jsonl", SAMPLE)

    def test_info(self):
        self.sweep("info", SAMPLE)

    def test_info_with_check(self):
        self.sweep("info", "--check", "--json", SAMPLE)

    def test_show_by_index(self):
        self.sweep("show", SAMPLE, "1")

    def test_report(self):
        self.sweep("report", SAMPLE, "-o", "page.html")

    def test_extract(self):
        self.sweep("extract", SAMPLE, "-o", "out", "--jobs", "1")

    def test_extract_with_attachments(self):
        self.sweep("extract", SAMPLE, "-o", "out", "--jobs", "1", "--attachments")


if __name__ == "__main__":
    unittest.main()
