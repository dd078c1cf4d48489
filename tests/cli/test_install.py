"""What `cmake --install` installs: a program that runs from anywhere, and its files."""

import os
import subprocess
import unittest

from program import PROGRAM, ProgramTest, notes

BUILD = os.environ["OLMKIT_BINARY_DIR"]


def cache_value(name):
    """Returns a value that the build was configured with."""
    with open(os.path.join(BUILD, "CMakeCache.txt"), encoding="utf-8") as cache:
        for line in cache:
            if line.startswith(name + ":"):
                return line.split("=", 1)[1].strip()
    return ""


class InstallTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.prefix = self.path("prefix")
        subprocess.run(["cmake", "--install", BUILD, "--prefix", self.prefix], check=True,
                       stdout=subprocess.DEVNULL)
        os.mkdir(self.path("elsewhere"))

    def installed(self, *names):
        return os.path.join(self.prefix, *names)

    def run_installed(self, *arguments):
        """Runs the program in another folder, with nothing in the environment that leads to the
        build."""
        environment = {name: value for name, value in os.environ.items()
                       if name.startswith(("LSAN", "ASAN", "UBSAN"))}
        return subprocess.run([self.installed("bin", "olmkit"), *arguments], check=False,
                              cwd=self.path("elsewhere"), env=environment, capture_output=True)

    def files_called(self, name):
        return [os.path.join(folder, name) for folder, _, files in os.walk(self.prefix)
                if name in files]

    def test_installed_program_runs_from_anywhere_and_uses_its_own_files(self):
        archive = self.archive(("a.xml", notes("one", "two")))

        done = self.run_installed("extract", archive, "-o", "out")

        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(self.files("elsewhere/out"), ["manifest.jsonl", "one.msg", "two.msg"])
        libraries = subprocess.run(["ldd", self.installed("bin", "olmkit")], check=True,
                                   capture_output=True).stdout.decode()
        self.assertNotIn(BUILD, libraries)
        self.assertEqual(len(self.files_called("olmfilter.so")), 1)

    def test_installed_tree_may_be_moved(self):
        archive = self.archive(("a.xml", notes("one")))
        os.rename(self.prefix, self.path("moved"))
        self.prefix = self.path("moved")

        done = self.run_installed("list", archive)

        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertIn(b"one", done.stdout)

    def test_missing_module_is_reported(self):
        archive = self.archive(("a.xml", notes("one")))
        os.remove(self.files_called("olmfilter.so")[0])
        if os.path.exists(os.path.join(cache_value("CMAKE_INSTALL_PREFIX"), "lib", "olmkit",
                                       "olmfilter.so")):
            self.skipTest("another olmkit is installed")

        done = self.run_installed("list", archive)

        self.assertEqual((done.returncode, done.stdout), (2, b""))
        self.assertIn(b"olmfilter.so", done.stderr)
        self.assertIn(b"install olmkit again", done.stderr)

    def test_completions_and_manual_are_installed_as_the_program_prints_them(self):
        for place, arguments in (
                ("share/bash-completion/completions/olmkit", ["completion", "bash"]),
                ("share/zsh/site-functions/_olmkit", ["completion", "zsh"]),
                ("share/fish/vendor_completions.d/olmkit.fish", ["completion", "fish"]),
                ("share/man/man1/olmkit.1", ["man"])):
            with self.subTest(place):
                printed = subprocess.run([PROGRAM, *arguments], check=True, capture_output=True)
                self.assertGreater(len(printed.stdout), 500)
                self.assertEqual(self.bytes_of(self.installed(place)), printed.stdout)


if __name__ == "__main__":
    unittest.main()
