"""Versions, help, suggestions, completions and the manual page.

Commands and options are read from the help itself, so new ones are tested too.
"""

import os
import re
import shutil
import subprocess
import unittest

from program import PROGRAM, ProgramTest, notes
from pseudoterminal import PseudoTerminal


def section(text, heading):
    """Returns the lines of help below a heading."""
    found = re.search(rf"^{heading}:\n((?:  .*\n)+)", text, re.MULTILINE)
    return found[1].splitlines() if found else []


def options_of(lines):
    """Returns all names of options: those before two blanks or the end of the line."""
    names = []
    for line in lines:
        if line.startswith("  -"):
            names += re.findall(r"--?[A-Za-z][\w-]*", re.split(r" {2,}| [A-Za-z]", line[2:])[0])
    return names


class HelpTestCase(ProgramTest):
    def help_of(self, *arguments):
        done = self.run_program(*arguments, "--help")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def commands(self):
        names = [line.split()[0] for line in section(self.help_of(), "Commands")
                 if line[2] != " "]
        self.assertIn("list", names)
        self.assertIn("extract", names)
        return names

    def own_options(self, command):
        own = self.help_of(command).split("\nOptions of every command:\n")[0]
        names = options_of(own.splitlines())
        self.assertIn("--help", names)
        return names

    def shared_options(self):
        return options_of(section(self.help_of(), "Options"))


class HelpTest(HelpTestCase):
    def test_version_lists_the_loaded_libraries(self):
        done = self.run_program("--version")

        self.assertEqual(done.returncode, 0)
        lines = [line.split(" ") for line in done.stdout.splitlines()]
        self.assertEqual([name for name, _ in lines],
                         ["olmkit", "libzip", "zlib", "expat", "utf8proc", "libcrypto",
                          "nlohmann-json", "CLI11"])
        for name, package in (("libzip", "libzip"), ("zlib", "zlib"), ("expat", "expat"),
                              ("libcrypto", "libcrypto"), ("nlohmann-json", "nlohmann_json")):
            installed = subprocess.run(["pkg-config", "--modversion", package], check=True,
                                       capture_output=True).stdout.decode().strip()
            self.assertEqual(dict(lines)[name], installed, name)
        for name, version in lines:
            self.assertRegex(version, r"^\d+\.\d+(\.\d+)*$", name)

    def test_version_and_help_also_work_after_a_command(self):
        self.assertEqual(self.run_program("list", "--version").stdout,
                         self.run_program("--version").stdout)
        self.assertEqual(self.help_of("list"), self.run_program("list", "-h").stdout)

    def test_each_command_has_examples(self):
        for command in self.commands():
            with self.subTest(command):
                lines = section(self.help_of(command), "Examples")
                self.assertGreater(len(lines), 0)
                for line in lines:
                    self.assertIn(f"olmkit {command}", line)

    def test_each_command_shows_the_options_of_every_command(self):
        shared = [name for name in self.shared_options() if name not in ("-h", "--help")]
        self.assertIn("--quiet", shared)
        for command in self.commands():
            with self.subTest(command):
                lines = section(self.help_of(command), "Options of every command")
                self.assertEqual(options_of(lines), shared)

    def test_options_with_few_values_show_them(self):
        self.assertIn("--format table|csv|jsonl", self.help_of("list"))
        self.assertIn("--color always|auto|never", self.help_of())


class SuggestionTest(HelpTestCase):
    def message(self, *arguments):
        done = self.run_program(*arguments)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(len(done.stderr.splitlines()), 1)
        return done.stderr

    def test_mistyped_command_gets_the_nearest_one_suggested(self):
        for mistyped, meant in (("lisst", "list"), ("lst", "list"), ("lits", "list"),
                                ("LIST", "list"), ("li", "list"), ("extrat", "extract"),
                                ("ext", "extract"), ("completoin", "completion")):
            with self.subTest(mistyped):
                self.assertIn(f"unknown command '{mistyped}'; did you mean '{meant}'?",
                              self.message(mistyped, "mail.olm"))

    def test_command_similar_to_none_gets_all_listed(self):
        text = self.message("frobnicate")
        self.assertNotIn("did you mean", text)
        self.assertIn("the commands are info, list, extract, ", text)

    def test_mistyped_option_gets_the_nearest_one_suggested(self):
        for arguments, mistyped, meant in (
                (["list", "a.olm", "--fromat", "csv"], "--fromat", "--format"),
                (["list", "a.olm", "--fromat=csv"], "--fromat", "--format"),
                (["extract", "a.olm", "--ouput", "out"], "--ouput", "--output"),
                (["extract", "a.olm", "--out", "out"], "--out", "--output"),
                (["extract", "a.olm", "-o", "out", "--colour", "never"], "--colour", "--color"),
                (["--verbos", "list", "a.olm"], "--verbos", "--verbose")):
            with self.subTest(mistyped):
                self.assertIn(f"unknown option '{mistyped}'", self.message(*arguments))
                self.assertIn(f"did you mean '{meant}'?", self.message(*arguments))

    def test_option_similar_to_none_gets_no_suggestion(self):
        text = self.message("list", "a.olm", "--frobnicate")
        self.assertEqual(text,
                         "olmkit: unknown option '--frobnicate'; see olmkit list --help\n")

    def test_very_long_name_gets_no_suggestion(self):
        self.assertNotIn("did you mean", self.message("l" * 100_000))

    def test_wrong_value_gets_the_valid_ones_listed(self):
        self.assertIn("--color: 'blue' is not a valid value; use always, auto or never",
                      self.message("list", "a.olm", "--color", "blue"))
        self.assertIn("SHELL: 'tcsh' is not a valid value; use bash, zsh or fish",
                      self.message("completion", "tcsh"))

    def test_archive_may_have_the_name_of_a_command(self):
        os.rename(self.archive(("a.xml", notes("one"))), self.path("extract"))
        done = self.run_program("list", "extract")
        self.assertEqual(done.returncode, 0)
        self.assertIn("one", done.stdout)


class ManualTest(HelpTestCase):
    def manual(self):
        done = self.run_program("man")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def test_manual_has_every_command_and_option(self):
        parts = re.split(r"^\.S[SH] ", self.manual(), flags=re.MULTILINE)
        by_name = {part.split("\n")[0].replace("\\", ""): part.replace("\\-", "-")
                   for part in parts}
        for name in self.shared_options():
            self.assertIn(rf"\fB{name}\fP", by_name["OPTIONS"])
        for command in self.commands():
            for name in self.own_options(command):
                self.assertIn(rf"\fB{name}\fP", by_name[command])

    def test_manual_has_the_exit_codes(self):
        part = self.manual().split(".SH EXIT STATUS")[1]
        for code in ("0", "1", "2", "3", "4", "5", "6", "130"):
            self.assertIn(rf"\fB{code}\fP", part)

    def test_formatters_accept_the_manual(self):
        page = self.write("olmkit.1", self.manual().encode())
        checked = 0
        for command in (["groff", "-ww", "-man", "-Tutf8", page],
                        ["man", "--warnings", "-l", page],
                        ["mandoc", "-Tlint", "-Werror", page]):
            if shutil.which(command[0]):
                done = subprocess.run(command, capture_output=True, check=False,
                                      env={**os.environ, "MANWIDTH": "80", "PAGER": "cat"})
                self.assertEqual((done.returncode, done.stderr), (0, b""), command)
                checked += 1
        if checked == 0:
            self.skipTest("no formatter of manual pages is installed")


class CompletionTest(HelpTestCase):
    def script(self, shell):
        done = self.run_program("completion", shell)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def folder_with_files(self):
        for name in ("mail.olm", "my mail.OLM", "notes.txt"):
            self.write(name, b"")
        os.mkdir(self.path("messages"))

    def in_bash(self, *words):
        """Returns what bash offers for the last word."""
        quoted = " ".join("'" + word.replace("'", "'\\''") + "'" for word in words)
        script = (f"source <('{PROGRAM}' completion bash)\n"
                  "compopt() { :; }\n"  # only a running completion may call it
                  f"COMP_WORDS=(olmkit {quoted})\nCOMP_CWORD={len(words)}\n_olmkit\n"
                  'printf "%s\\n" "${COMPREPLY[@]}"\n')
        done = subprocess.run(["bash", "--norc", "-c", script], cwd=self.folder, check=True,
                              capture_output=True)
        self.assertEqual(done.stderr, b"")
        return done.stdout.decode().split("\n")[:-1]

    def test_bash_accepts_the_script(self):
        self.write("olmkit.bash", self.script("bash").encode())
        done = subprocess.run(["bash", "-n", self.path("olmkit.bash")], capture_output=True,
                              check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    def test_bash_offers_every_command_and_option(self):
        self.assertEqual(self.in_bash(""), self.commands())
        self.assertEqual(sorted(self.in_bash("-")), sorted(self.shared_options()))
        for command in self.commands():
            offered = self.in_bash(command, "-")
            self.assertEqual(sorted(set(offered)),
                             sorted(set(self.own_options(command) + self.shared_options())))

    def test_bash_completes_a_started_word(self):
        self.folder_with_files()
        cases = [
            (["ex"], ["extract"]),
            (["--color", ""], ["always", "auto", "never"]),
            (["--color", "=", "a"], ["always", "auto"]),
            (["--color", "="], ["always", "auto", "never"]),
            (["--color", "never", "li"], ["list"]),
            (["-q", "li"], ["list"]),
            (["list", "--format", "c"], ["csv"]),
            (["list", "mail.olm", "--format", "=", "j"], ["jsonl"]),
            (["list", "mail.olm", "--color", "n"], ["never"]),
            (["list", ""], ["mail.olm", "my mail.OLM", "messages"]),
            (["list", "no"], []),
            (["list", "-q", "mail.olm", ""], [""]),
            (["extract", "-o", "m"], ["messages"]),
            (["extract", "--output", "=", "m"], ["messages"]),
            (["extract", "-o", "messages", "mai"], ["mail.olm"]),
            (["extract", "--item", "5", "mai"], ["mail.olm"]),
            (["extract", "mail.olm", "--item", ""], [""]),
            (["list", "--", "mai"], ["mail.olm"]),
            (["list", "--", "--"], [""]),
            (["completion", ""], ["bash", "zsh", "fish"]),
        ]
        for words, expected in cases:
            with self.subTest(words):
                self.assertEqual(sorted(self.in_bash(*words)), sorted(expected or [""]))

    def typed(self, shell, line, expected, setup=""):
        """Types a line and a tab into a shell, and waits for `expected`."""
        os.makedirs(self.path("functions"), exist_ok=True)
        self.write("functions/_olmkit", self.script("zsh").encode())
        environment = {"HOME": self.folder,
                       "PATH": os.path.dirname(PROGRAM) + ":" + os.environ["PATH"]}
        terminal = PseudoTerminal(shell, columns=200, cwd=self.folder, with_input=True,
                                  environment=environment)
        try:
            terminal.type(setup + "echo rea''dy\n")
            terminal.read_until("ready")
            terminal.text = ""
            terminal.type(line + "\t")
            terminal.read_until(expected)
        finally:
            terminal.process.kill()
            terminal.process.wait()
            os.close(terminal.master)

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_zsh_accepts_the_script(self):
        self.write("_olmkit", self.script("zsh").encode())
        done = subprocess.run(["zsh", "-n", self.path("_olmkit")], capture_output=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_zsh_completes_commands_options_values_and_archives(self):
        self.folder_with_files()
        setup = (f"PS1='> '; fpath=({self.path('functions')} $fpath); "
                 "autoload -Uz compinit; compinit -u -D; ")
        for line, expected in (("olmkit extr", "olmkit extract "),
                               ("olmkit list --form", "--format="),
                               ("olmkit list --format=c", "--format=csv"),
                               ("olmkit -q list --colo", "--color="),
                               ("olmkit list mai", "mail.olm"),
                               ("olmkit extract -o mess", "messages/"),
                               ("olmkit completion z", "completion zsh")):
            with self.subTest(line):
                self.typed(["zsh", "-f", "-i"], line, re.escape(expected), setup)

    def test_zsh_knows_every_command_and_option(self):
        script = self.script("zsh")
        for command in self.commands():
            self.assertIn(f"'{command}:", script)
            part = re.search(rf"^        {command}\)\n(.*?);;", script,
                             re.MULTILINE | re.DOTALL)[1]
            self.assertIn('"${shared[@]}"', part)
            for name in self.own_options(command):
                self.assertRegex(part, rf"[*)]{name}[=+]?\[")
        shared = re.search(r"shared=\((.*?)\n    \)", script, re.DOTALL)[1]
        for name in self.shared_options():
            self.assertRegex(shared, rf"[*)]{name}[=+]?\[")

    def in_fish(self, line):
        """Returns what fish offers for a line, without the descriptions."""
        script = f"'{PROGRAM}' completion fish | source; complete -C '{line}'"
        done = subprocess.run(["fish", "--no-config", "-c", script], cwd=self.folder, check=True,
                              capture_output=True, env={**os.environ, "HOME": self.folder})
        self.assertEqual(done.stderr, b"")
        return [row.split("\t")[0] for row in done.stdout.decode().splitlines()]

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish_offers_every_command_and_option(self):
        self.assertEqual(sorted(self.in_fish("olmkit ")), sorted(self.commands()))
        for command in self.commands():
            offered = self.in_fish(f"olmkit {command} -") + self.in_fish(f"olmkit {command} --")
            for name in self.own_options(command) + self.shared_options():
                self.assertIn(name, offered)

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish_completes_a_started_word(self):
        self.folder_with_files()
        for line, expected in (("olmkit ex", ["extract"]),
                               ("olmkit list --format c", ["csv"]),
                               ("olmkit list --format=j", ["--format=jsonl"]),
                               ("olmkit --color n", ["never"]),
                               ("olmkit extract -o mess", ["messages/"]),
                               ("olmkit completion ", ["bash", "fish", "zsh"]),
                               ("olmkit list mai", ["mail.olm"])):
            with self.subTest(line):
                self.assertEqual(sorted(self.in_fish(line)), expected)
        self.assertIn("mail.olm", self.in_fish("olmkit list "))


if __name__ == "__main__":
    unittest.main()
