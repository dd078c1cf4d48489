"""Progress, colours, and how much is printed."""

import json
import os
import re
import signal
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest, notes
from pseudoterminal import SLOW_STEPS, PseudoTerminal, cells, screen, without_colors

RED = "\x1b[1;31molmkit:\x1b[0m "
YELLOW = "\x1b[1;33molmkit:\x1b[0m "
CLEARED = "\r\x1b[K"


class TerminalTest(ProgramTest):
    def terminal(self, *arguments, **options):
        return PseudoTerminal([PROGRAM, *arguments], cwd=self.folder, **options)

    def on_terminal(self, *arguments, **options):
        return self.terminal(*arguments, **options).finish()

    def lossy_archive(self):
        """Two notes, and a mail whose attachment is missing."""
        attachment = '<messageAttachment OPFAttachmentURL="gone.txt"/>'
        return self.archive(
            ("a.xml", notes("one", "two")),
            ("b.xml", "<emails><email><OPFMessageCopySubject>three</OPFMessageCopySubject>"
             f"<OPFMessageCopyAttachmentList>{attachment}</OPFMessageCopyAttachmentList>"
             "</email></emails>"), name="lossy.olm")

    def long_archive(self, name="long.olm", count=2000):
        return self.archive(("b.xml", notes(*[f"note {n}" for n in range(count)])), name=name)

    def stderr_in_steps(self, *arguments):
        """Returns the standard error of a program that is slow at first."""
        with subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE) as process:
            for _ in range(SLOW_STEPS):
                process.send_signal(signal.SIGSTOP)
                time.sleep(0.15)
                process.send_signal(signal.SIGCONT)
                time.sleep(0.01)
            return process.stderr.read().decode()


class ColorTest(TerminalTest):
    def test_errors_are_red_and_warnings_yellow_on_a_terminal(self):
        error = self.on_terminal("list", "missing.olm")
        warning = self.on_terminal("extract", self.lossy_archive(), "-o", "out")

        self.assertTrue(error.startswith(RED + "missing.olm: does not exist"), error)
        self.assertIn(YELLOW, warning)
        self.assertIn('there is no file named "gone.txt"', warning)

    def test_wrong_arguments_are_red_too(self):
        self.assertTrue(self.on_terminal("lisst").startswith(RED))
        self.assertTrue(self.on_terminal("lisst", "--color", "never").startswith("olmkit:"))

    def test_environment_and_option_decide_on_colours(self):
        cases = [
            ("NO_COLOR", {"NO_COLOR": "1"}, [], False),
            ("empty NO_COLOR", {"NO_COLOR": ""}, [], True),
            ("dumb terminal", {"TERM": "dumb"}, [], False),
            ("unknown terminal", {"TERM": None}, [], False),
            ("never", {}, ["--color", "never"], False),
            ("auto", {}, ["--color=auto"], True),
            ("always over NO_COLOR", {"NO_COLOR": "1"}, ["--color", "always"], True),
            ("last one counts", {}, ["--color", "never", "--color", "always"], True),
        ]
        for name, environment, options, is_colored in cases:
            with self.subTest(name):
                text = self.on_terminal(*options, "list", "missing.olm", environment=environment)
                self.assertEqual("\x1b[" in text, is_colored, text)

    def test_pipes_are_coloured_only_on_request(self):
        plain = self.run_program("list", "missing.olm")
        colored = subprocess.run([PROGRAM, "list", "missing.olm", "--color", "always"],
                                 cwd=self.folder, stderr=subprocess.PIPE, check=False)

        self.assertNotIn("\x1b", plain.stderr)
        self.assertTrue(colored.stderr.decode().startswith(RED))

    def test_headings_of_help_are_bold_only_on_a_terminal(self):
        piped = self.run_program("extract", "--help").stdout
        shown = self.on_terminal("extract", "--help").replace("\r\n", "\n")

        self.assertIn("\x1b[1mExamples:\x1b[0m\n", shown)
        self.assertIn("\x1b[1mOptions:\x1b[0m\n", shown)
        self.assertEqual(without_colors(shown), piped)
        self.assertNotIn("\x1b", self.on_terminal("--help", environment={"NO_COLOR": "1"}))

    def test_completions_and_manual_have_no_control_sequences(self):
        for arguments in (["completion", "bash"], ["man"]):
            self.assertNotIn("\x1b", self.on_terminal(*arguments))

    def test_names_from_an_archive_can_not_act_on_the_terminal(self):
        archive = self.archive(("\x1b[2Jevil.xml", "<notes><note>"))

        text = self.on_terminal("list", archive)

        self.assertIn("[2Jevil.xml", text)
        self.assertNotIn("\x1b[2J", text)


class LoudnessTest(TerminalTest):
    def test_quiet_run_does_its_work_and_prints_nothing(self):
        done = self.run_program("extract", self.archive(("a.xml", notes("one"))), "-o", "out", "-q")

        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.assertEqual(self.files("out"), ["manifest.jsonl", "one.msg"])

    def test_quiet_run_prints_no_warnings_but_has_their_exit_code(self):
        done = self.run_program("extract", self.lossy_archive(), "-o", "out", "--quiet")

        self.assertEqual((done.returncode, done.stdout, done.stderr), (1, "", ""))

    def test_quiet_run_prints_errors(self):
        done = self.run_program("--quiet", "list", "missing.olm")
        self.assertEqual(done.returncode, 3)
        self.assertIn("missing.olm", done.stderr)

        archive = self.archive(("a.xml", notes("one")))
        done = self.run_program("extract", archive, "-o", "out", "--item", "7", "--quiet")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("item 7", done.stderr)

    def test_quiet_list_still_prints_its_rows(self):
        archive = self.archive(("a.xml", notes("one")))
        self.assertEqual(self.run_program("list", archive, "-q").stdout,
                         self.run_program("list", archive).stdout)

    def test_verbose_run_prints_each_file_that_is_written(self):
        done = self.run_program("extract", self.archive(("a.xml", notes("one", "two"))), "-o",
                                "out", "--verbose")

        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr, "olmkit: wrote out/one.msg\nolmkit: wrote out/two.msg\n")
        self.assertIn("2 of 2 messages", done.stdout)

    def test_failed_item_is_not_printed_as_written(self):
        done = self.run_program("extract", self.archive(("a.xml", notes("one"))), "-o", "out",
                                "-v", "--item", "7")

        self.assertNotIn("wrote", done.stderr)

    def test_quiet_and_verbose_can_not_be_used_together(self):
        done = self.run_program("list", "mail.olm", "-q", "-v")
        self.assertEqual(done.returncode, 2)
        self.assertIn("--quiet and --verbose can't be used together", done.stderr)

    def test_options_of_every_command_may_come_before_or_after_it(self):
        archive = self.archive(("a.xml", notes("one")))
        for place, arguments in (("before", ["-v", "extract", archive, "-o", "out"]),
                                 ("after", ["extract", archive, "-o", "out", "-v"]),
                                 ("between", ["extract", "-v", archive, "-o", "out"])):
            with self.subTest(place):
                self.assertIn("wrote out/one.msg", self.run_program(*arguments).stderr)


class BarTest(TerminalTest):
    def bars(self, text):
        """Returns the line of the bar, each time that it was drawn."""
        found = [part.split("\r")[0].split("\n")[0] for part in text.split(CLEARED)[1:]]
        return [bar for bar in found if re.search(r"\d+ (done|of \d+)", bar)
                and "written to" not in bar]

    def test_bar_appears_and_disappears(self):
        text = self.terminal("extract", self.long_archive(), "-o", "out",
                             columns=160).finish_in_steps()

        bars = self.bars(text)
        self.assertGreater(len(bars), 1)
        counts = [int(re.search(r"(\d+) (?:done|of)", bar)[1]) for bar in bars]
        self.assertEqual(counts, sorted(set(counts)))
        self.assertTrue(bars[0].startswith("long.olm  "), bars[0])
        self.assertRegex(bars[-1], r"\d+/s  [\d.]+ [kM]B")
        self.assertEqual(screen(text)[0], "2000 of 2000 messages written to out")

    def test_bar_is_not_in_the_results(self):
        terminal = self.terminal("extract", self.long_archive(), "-o", "out", with_output=False)
        text = terminal.finish_in_steps()

        self.assertGreater(len(self.bars(text)), 1)
        self.assertEqual(screen(text), [])
        self.assertEqual(terminal.output.splitlines()[0], "2000 of 2000 messages written to out")

    def test_short_run_shows_no_bar(self):
        text = self.on_terminal("extract", self.archive(("a.xml", notes("one"))), "-o", "out")

        self.assertTrue(text.startswith("1 of 1 message written to out\r\n"), text)
        self.assertNotIn("\x1b", text)

    def test_messages_clear_the_bar_first(self):
        lost = "".join("<email><OPFMessageCopySubject>mail</OPFMessageCopySubject>"
                       "<OPFMessageCopyAttachmentList><messageAttachment OPFAttachmentURL='no'/>"
                       "</OPFMessageCopyAttachmentList></email>" if n % 100 == 99 else
                       "<email><OPFMessageCopySubject>mail</OPFMessageCopySubject></email>"
                       for n in range(2000))
        archive = self.archive(("a.xml", f"<emails>{lost}</emails>"))

        text = self.terminal("extract", archive, "-o", "out", columns=500).finish_in_steps()

        self.assertGreater(len(self.bars(text)), 1)
        lines = screen(text)
        self.assertEqual(lines[20], "2000 of 2000 messages written to out; 20 with warnings")
        for line in lines[:20]:
            self.assertRegex(line, r"^olmkit: .*there is no file named \"no\"$")

    def test_bar_follows_the_width_of_the_terminal(self):
        name = "小川直子のアーカイブ.olm"
        terminal = self.terminal("extract", self.long_archive(name), "-o", "out", columns=100)
        shown = []
        for columns in (100, 40, 12):
            terminal.process.send_signal(signal.SIGSTOP)
            while terminal.read():
                pass
            start = len(terminal.text)
            terminal.resize(columns)
            while not self.bars(terminal.text[start:]):
                self.assertIsNone(terminal.process.poll())
                terminal.step()
            shown.append(self.bars(terminal.text[start:]))
        terminal.finish()

        for columns, bars in zip((100, 40, 12), shown):
            self.assertGreater(len(bars), 0)
            self.assertLess(max(map(cells, bars)), columns)
        self.assertIn(name, shown[0][-1])
        self.assertNotIn(name, shown[1][-1])

    def test_no_bar_is_shown_where_it_would_disturb(self):
        archive = self.long_archive(count=1000)
        cases = [
            ("dumb terminal", {"TERM": "dumb"}, []),
            ("unknown terminal", {"TERM": None}, []),
            ("none", {}, ["--progress", "none"]),
            ("quiet", {}, ["--quiet"]),
        ]
        for name, environment, options in cases:
            with self.subTest(name):
                text = self.terminal("extract", archive, "-o", "out", *options,
                                     environment=environment).finish_in_steps()
                self.assertNotIn("\x1b", text)
        self.assertEqual(self.run_program("extract", archive, "-o", "out").stderr, "")

    def test_bar_can_be_requested_without_a_terminal(self):
        bars = self.bars(self.stderr_in_steps("extract", self.long_archive(), "-o", "out",
                                            "--progress", "bar"))

        self.assertGreater(len(bars), 1)
        self.assertLessEqual(max(map(cells, bars)), 79)

    def test_interrupted_run_clears_its_bar(self):
        terminal = self.terminal("extract", self.long_archive(), "-o", "out")
        terminal.step_until("done")
        terminal.process.send_signal(signal.SIGINT)
        terminal.process.send_signal(signal.SIGCONT)
        text = terminal.finish()

        self.assertEqual(terminal.process.returncode, 130)
        lines = screen(text)
        self.assertEqual(len(lines), 1)
        self.assertTrue(lines[0].startswith("olmkit: interrupted"), lines)

    def test_twice_interrupted_run_clears_its_bar(self):
        terminal = self.terminal("extract", self.long_archive(), "-o", "out")
        terminal.step_until("done")
        terminal.process.send_signal(signal.SIGTERM)
        terminal.process.send_signal(signal.SIGINT)
        terminal.process.send_signal(signal.SIGCONT)
        text = terminal.finish()

        self.assertEqual(terminal.process.returncode, 130)
        self.assertTrue(screen(text)[0].startswith("olmkit: interrupted"), screen(text))


class JsonProgressTest(TerminalTest):
    KEYS = ["done", "total", "bytes", "failed", "seconds", "rate", "seconds_left", "finished"]

    def progress(self, *arguments):
        lines = self.stderr_in_steps(*arguments, "--progress", "json").splitlines()
        self.messages = [line for line in lines if line.startswith("olmkit: ")]
        return [json.loads(line) for line in lines if not line.startswith("olmkit: ")]

    def test_lines_report_the_progress_of_the_run(self):
        lines = self.progress("extract", self.long_archive(), "-o", "out")

        self.assertGreater(len(lines), 1)
        for line in lines:
            self.assertEqual(list(line), self.KEYS)
        counts = [line["done"] for line in lines]
        self.assertEqual(counts, sorted(counts))
        self.assertEqual([line["finished"] for line in lines], [False] * (len(lines) - 1) + [True])
        seconds = [line["seconds"] for line in lines[:-1]]
        for earlier, later in zip(seconds, seconds[1:]):
            self.assertGreaterEqual(later - earlier, 0.24)

    def test_last_line_has_the_totals(self):
        last = self.progress("extract", self.archive(("a.xml", notes("one", "two"))), "-o", "out",
                             "--item", "0", "--item", "1", "--item", "7", "--quiet")[-1]

        size = sum(os.path.getsize(self.path("out", name)) for name in ("one.msg", "two.msg"))
        self.assertEqual((last["done"], last["failed"], last["bytes"]), (3, 1, size))
        self.assertTrue(last["finished"])
        self.assertEqual(len(self.messages), 1)

    def test_run_without_items_has_a_last_line(self):
        lines = self.progress("extract", self.archive(("a.xml", notes())), "-o", "out")

        self.assertEqual([(line["done"], line["finished"]) for line in lines], [(0, True)])


if __name__ == "__main__":
    unittest.main()
