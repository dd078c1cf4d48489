"""olmkit extract --resume: a run that was interrupted at any moment continues, and its output is that
of a run without an interruption."""

import json
import os
import random
import signal
import subprocess
import time
import unittest

from extraction_runs import RunTest, mail, mails
from program import PROGRAM, notes

# Moments at which a run is interrupted.
MOMENTS = 5 if os.environ.get("OLMKIT_SANITIZED") else 20


class ResumeTest(RunTest):
    def many_mails(self, count=400):
        return self.archive(
            *[(f"{'ab'[n % 2]}/{n:05}.xml", mails(mail(f"m{n}", *["gone"] * (n % 50 == 0))))
              for n in range(count)],
            ("N/x.xml", notes(*[f"note {n}" for n in range(100)])))

    def break_off(self, archive, out, number, wait, *arguments):
        """Starts a run and sends it a signal after a while. Returns whether the signal ended it."""
        with subprocess.Popen([PROGRAM, "extract", archive, "-o", self.path(out), *arguments],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            while not os.path.exists(self.path(out)) and process.poll() is None:
                time.sleep(0.001)
            time.sleep(wait)
            process.send_signal(number)
            process.communicate(timeout=60)
        return process.returncode in (-signal.SIGKILL, 130)

    def assert_any_break_can_be_resumed(self, number):
        archive = self.many_mails()
        started = time.monotonic()
        whole = self.extract(archive, out="whole", code=1)
        duration = time.monotonic() - started
        dice = random.Random(number)
        broken = 0
        for attempt in range(MOMENTS):
            out = f"out{attempt}"
            jobs = ("--jobs", str(dice.choice((1, 2, 8))))
            for _ in range(dice.choice((1, 1, 2, 3))):
                broken += self.break_off(archive, out, number, dice.random() * duration * 0.7,
                                         "--resume", *jobs)
            done = self.extract(archive, "--resume", *jobs, out=out, code=1)
            self.assertEqual(done.stderr, whole.stderr)
            self.assertEqual(done.stdout.replace(out, "whole"), whole.stdout)
            self.assert_same_tree("whole", out)
        self.assertGreater(broken, MOMENTS // 4)

    def test_run_that_was_interrupted_at_any_moment_continues(self):
        self.assert_any_break_can_be_resumed(signal.SIGINT)

    def test_run_that_was_killed_at_any_moment_continues(self):
        self.assert_any_break_can_be_resumed(signal.SIGKILL)

    def broken_run(self, *arguments):
        """Makes a folder "out" with a run that stopped after five of ten messages."""
        archive = self.archive(*[(f"{n}.xml", mails(mail(f"m{n}"))) for n in range(10)])
        os.makedirs(self.path("out", "m5.msg"))
        self.extract(archive, "--fail-fast", *arguments, code=5)
        os.rmdir(self.path("out", "m5.msg"))
        self.assertEqual(self.files("out"), ["m0.msg", "m1.msg", "m2.msg", "m3.msg", "m4.msg",
                                             "manifest.jsonl", "unfinished.json"])
        return archive

    def test_whole_messages_stay_and_others_are_written_again(self):
        archive = self.broken_run()
        os.remove(self.path("out", "m1.msg"))
        self.write("out/m2.msg", b"short")
        contents = self.bytes_of(self.path("out", "m3.msg"))
        self.write("out/m3.msg", contents[:-1] + bytes([contents[-1] ^ 1]))
        self.write("out/.olmkit-1-1.part", b"left behind")
        kept = os.stat(self.path("out", "m0.msg")), os.stat(self.path("out", "m4.msg"))

        self.extract(archive, "--resume")

        self.assertEqual((os.stat(self.path("out", "m0.msg")).st_ino,
                          os.stat(self.path("out", "m4.msg")).st_ino),
                         (kept[0].st_ino, kept[1].st_ino))
        self.extract(archive, out="whole")
        self.assert_same_tree("whole", "out")

    def test_whole_lines_of_a_cut_manifest_are_used(self):
        archive = self.broken_run()
        lines = self.bytes_of(self.path("out", "manifest.jsonl")).splitlines(keepends=True)
        self.write("out/manifest.jsonl", b"".join(lines[:3]) + b"{broken}\n" + lines[3][:40])

        self.extract(archive, "--resume")

        self.extract(archive, out="whole")
        self.assert_same_tree("whole", "out")

    def test_another_archive_is_refused(self):
        self.broken_run()
        other = self.archive(*[(f"{n}.xml", mails(mail(f"n{n}"))) for n in range(10)],
                             name="other.olm")
        before = self.tree("out")

        done = self.extract(other, "--resume", code=2)

        self.assertIn("another archive", done.stderr)
        self.assertEqual(self.tree("out"), before)

    def test_other_options_are_refused(self):
        archive = self.broken_run()
        before = self.tree("out")
        for options in (("--layout=flat",), ("--item=1",), ("--at=0:1",), ("--kind=email",),
                        ("--timestamps",), ("--since=2001",)):
            with self.subTest(options):
                done = self.extract(archive, "--resume", *options, code=2)
                self.assertIn("other options", done.stderr)
        self.assertEqual(self.tree("out"), before)
        self.extract(archive, "--resume", "--jobs=1", "--max-errors=7")

    def test_run_without_resume_starts_again_and_says_so(self):
        archive = self.broken_run()
        self.write("out/m0.msg", b"not what the manifest says")

        done = self.extract(archive)

        self.assertIn("has an unfinished run, which is started again", done.stderr)
        self.extract(archive, out="whole")
        self.assert_same_tree("whole", "out")

    def test_resume_without_an_unfinished_run_is_a_new_run(self):
        archive = self.archive(("a.xml", notes("1")))

        for _ in range(2):
            done = self.extract(archive, "--resume")
            self.assertEqual(done.stderr, "")
            self.assertEqual(self.files("out"), ["1.msg", "manifest.jsonl"])

    def test_record_of_an_unfinished_run_has_no_path_and_no_time(self):
        self.broken_run()
        with open(self.path("out", "unfinished.json"), encoding="utf-8") as file:
            record = json.load(file)
        self.assertEqual(list(record), ["program", "archive", "options", "shard", "manifest"])
        self.assertIsNone(record["manifest"])
        self.assertEqual(list(record["archive"]), ["size", "directory_sha256"])
        self.assertEqual(record["archive"]["size"], os.path.getsize(self.path("mail.olm")))
        self.assertNotIn(self.folder, json.dumps(record))

    def test_link_in_the_place_of_a_kept_message_is_not_followed(self):
        archive = self.broken_run()
        os.rename(self.path("out", "m1.msg"), self.path("elsewhere"))
        os.symlink(self.path("elsewhere"), self.path("out", "m1.msg"))

        self.extract(archive, "--resume")

        self.assertFalse(os.path.islink(self.path("out", "m1.msg")))
        self.extract(archive, out="whole")
        self.assert_same_tree("whole", "out")

    def test_run_on_a_full_disk_continues_when_there_is_room_again(self):
        os.mkdir(self.path("disk"))
        mount = ["mount", "-t", "tmpfs", "-o", "size=256k", "tmpfs", self.path("disk")]
        if subprocess.run(mount, stderr=subprocess.DEVNULL, check=False).returncode != 0:
            self.skipTest("nothing can be mounted here")
        self.addCleanup(subprocess.run, ["umount", self.path("disk")], check=False)
        archive = self.archive(*[(f"{n}.xml", mails(mail(f"m{n}"))) for n in range(300)])
        self.extract(archive, out="whole")
        for jobs in ("1", "4"):
            with self.subTest(jobs):
                out = "disk/out" + jobs
                subprocess.run(["mount", "-o", "remount,size=256k", self.path("disk")], check=True)

                done = self.extract(archive, "--jobs", jobs, out=out, code=5)
                self.assertIn("No space left", done.stderr)
                self.assertIn("--resume", done.stderr)

                subprocess.run(["mount", "-o", "remount,size=8m", self.path("disk")], check=True)
                self.extract(archive, "--jobs", jobs, "--resume", out=out)
                self.assert_same_tree("whole", out)
                subprocess.run(["rm", "-r", self.path(out)], check=True)

    def test_two_runs_do_not_write_to_one_folder(self):
        archive = self.many_mails(5000)
        with subprocess.Popen([PROGRAM, "extract", archive, "-o", self.path("out")],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            while not os.path.exists(self.path("out", "unfinished.json")):
                time.sleep(0.001)
            process.send_signal(signal.SIGSTOP)
            done = self.extract(archive, code=5)
            process.send_signal(signal.SIGCONT)
            process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1)
        self.assertIn("another run", done.stderr)


if __name__ == "__main__":
    unittest.main()
