"""Runs olmkit as a process, and names the archives to run it on."""

import json
import os
import subprocess

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
PROGRAM = os.path.join(os.environ["OLMKIT_BINARY_DIR"], "bin", "olmkit")
SAMPLE = os.path.join(SOURCE, "examples", "sample.olm")
REAL_ARCHIVE = os.path.join(SOURCE, "..", "shared", "archives", "real-2018.olm")

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
