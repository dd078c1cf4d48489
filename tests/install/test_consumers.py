"""Programs of other projects, built and run on an installed tree that was moved after it was
installed: by find_package, by pkg-config, and a host of the module in C."""

import glob
import json
import os
import shutil
import subprocess
import tempfile
import unittest

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
BUILD = os.environ["OLMKIT_BINARY_DIR"]
CONSUMER = os.path.join(SOURCE, "tests", "install", "consumer")
SAMPLE = os.path.join(SOURCE, "examples", "sample.olm")
MAIL = 9  # its index in the sample
WARNINGS = ["-Wall", "-Wextra", "-Werror"]


def run(*command, **options):
    """What the command prints. Fails with what it said when its exit status is not 0."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          timeout=120, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command}: exit status {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def sanitizer_flags():
    """What a program needs that uses libraries built with sanitizers."""
    with open(os.path.join(BUILD, "CMakeCache.txt"), encoding="utf-8") as cache:
        for line in cache:
            name, _, value = line.strip().partition("=")
            if name.startswith("OLMKIT_SANITIZE:") and value:
                return [f"-fsanitize={value}"]
    return []


class InstalledTreeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="olmkit-install-")
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        first = os.path.join(cls.folder, "first")
        run("cmake", "--install", BUILD, "--prefix", first)
        cls.prefix = os.path.join(cls.folder, "moved")
        os.rename(first, cls.prefix)
        package, = glob.glob(f"{cls.prefix}/**/pkgconfig/olmkit.pc", recursive=True)
        cls.environment = {**os.environ, "PKG_CONFIG_PATH": os.path.dirname(package)}
        cls.sanitize = sanitizer_flags()

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def pkg_config(self, *arguments):
        return run("pkg-config", *arguments, env=self.environment).split()

    def check_consumer(self, program):
        printed = run(program, SAMPLE, str(MAIL)).splitlines()

        listed = run(os.path.join(self.prefix, "bin", "olmkit"), "list", "--format", "jsonl",
                     SAMPLE).splitlines()
        rows = [json.loads(line) for line in listed]
        self.assertEqual(len(rows), 13)
        self.assertEqual(printed[:-1], [f"{row['index']} {row['entry_name']}" for row in rows])
        self.assertEqual(printed[-1], f"IPM.Note: {rows[MAIL]['subject']}")

    def test_cmake_project_finds_the_package(self):
        build = self.path("by-cmake")
        run("cmake", "-S", CONSUMER, "-B", build, "-G", "Ninja",
            f"-DCMAKE_PREFIX_PATH={self.prefix}", "-DCMAKE_BUILD_TYPE=Debug",
            "-DCMAKE_CXX_FLAGS=" + " ".join(WARNINGS + self.sanitize))
        run("cmake", "--build", build)

        self.check_consumer(os.path.join(build, "consumer"))
        with open(os.path.join(build, "module.txt"), encoding="utf-8") as file:
            self.assertTrue(os.path.samefile(file.read(), self.module()))

    def test_cmake_project_that_needs_another_version_is_refused(self):
        project = self.path("newer")
        os.mkdir(project)
        with open(os.path.join(project, "CMakeLists.txt"), "w", encoding="utf-8") as file:
            file.write("cmake_minimum_required(VERSION 3.25)\nproject(newer LANGUAGES NONE)\n"
                       "find_package(olmkit 0.2 REQUIRED)\n")

        done = subprocess.run(["cmake", "-S", project, "-B", self.path("newer-build"),
                               "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={self.prefix}"],
                              capture_output=True, text=True, check=False)

        self.assertNotEqual(done.returncode, 0)
        self.assertIn("requested version \"0.2\"", done.stderr)

    def test_program_is_built_by_pkg_config(self):
        program = self.path("by-pkg-config")
        library_folder, = self.pkg_config("--variable=libdir", "olmkit")
        run("c++", "-std=c++20", *WARNINGS, *self.sanitize,
            os.path.join(CONSUMER, "consumer.cpp"), "-o", program,
            *self.pkg_config("--cflags", "--libs", "olmkit"), f"-Wl,-rpath,{library_folder}")

        self.check_consumer(program)

    def module(self):
        path, = self.pkg_config("--variable=module", "olmkit-filter")
        return path

    def test_host_in_c_uses_the_installed_header_and_module(self):
        sources = self.path("minimal-host")
        shutil.copytree(os.path.join(SOURCE, "examples", "minimal-host"), sources)
        program = self.path("host-in-c")
        run("cc", "-std=c11", "-pedantic", "-rdynamic", *WARNINGS, *self.sanitize,
            *self.pkg_config("--cflags", "olmkit-filter"), *glob.glob(f"{sources}/*.c"),
            "-o", program, *self.pkg_config("--libs", "libzip", "expat"), "-ldl")

        rows = run(program, self.module(), SAMPLE).splitlines()
        run(program, self.module(), SAMPLE, "--extract", str(MAIL), self.path("message"))

        self.assertEqual(len(rows), 13)
        with open(self.path("message", "__substg1.0_0037001F"), "rb") as subject:
            self.assertIn(subject.read().decode("utf-16-le"), rows[MAIL])

    def test_module_is_configured_without_the_libraries_of_the_host(self):
        libraries = ("PkgConfig", "EXPAT", "ZLIB", "CLI11", "OpenSSL", "nlohmann_json", "GTest")
        run("cmake", "-S", SOURCE, "-B", self.path("module-alone"), "-G", "Ninja",
            "-DOLMKIT_BUILD_HOST=OFF",
            *(f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in libraries))


if __name__ == "__main__":
    unittest.main()
