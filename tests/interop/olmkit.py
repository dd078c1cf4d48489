"""Runs olmkit as a process, and names the archives to run it on."""

import json
import os
import subprocess
import unittest

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
PROGRAM = os.path.join(os.environ["OLMKIT_BINARY_DIR"], "bin", "olmkit")
SAMPLE = os.path.join(SOURCE, "examples", "sample.olm")

# The path of an archive that the mail program exported; empty where there is none. A path that is
# given and wrong fails the tests that need it.
REAL_ARCHIVE = os.environ.get("OLMKIT_REAL_ARCHIVE", "")
needs_real_archive = unittest.skipUnless(REAL_ARCHIVE, "OLMKIT_REAL_ARCHIVE is not set")

DONE, SOME_FAILED = 0, 1


def extract(archive, folder, *options):
    """Extracts an archive and returns the rows of the manifest. Some items may have failed."""
    command = [PROGRAM, "extract", archive, "-o", folder, *options]
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    if done.returncode not in (DONE, SOME_FAILED):
        raise AssertionError("olmkit extract: exit status %d: %s" % (
            done.returncode, done.stdout.decode("utf-8", "replace")))
    with open(os.path.join(folder, "manifest.jsonl"), encoding="utf-8") as manifest:
        return [json.loads(line) for line in manifest]
