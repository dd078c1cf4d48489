"""tools/check-rooms on small trees, each with one fault."""

import os
import pathlib
import subprocess
import tempfile
import unittest

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
CHECK = os.path.join(SOURCE, "tools", "check-rooms")

ARCHITECTURE = """
| Storey | May include | What |
|---|---|---|
| `upper/` | `lower/public/` | the upper one |
| `lower/` | | the lower one |

## upper/: a storey

| Level | Room | What is in it |
|---|---|---|
| 1 | `ground/` | what all rooms use |
| 2 | `left/`, `right/` | two rooms side by side |
| 3 | `main.cpp` | the program |

## lower/: another storey

| Level | Room | What is in it |
|---|---|---|
| 1 | `public/` | what others see |
| 2 | `hidden/` | what they don't |
"""

TREE = {
    "docs/architecture.md": ARCHITECTURE,
    "upper/ground/Text.h": "#include <string>\n",
    "upper/left/Left.h": '#include "upper/left/Other.h"\n',
    "upper/left/Other.h": '#include "upper/ground/Text.h"\n#include "lower/public/Public.h"\n',
    "upper/right/Right.h": "",
    "upper/main.cpp": '#include "upper/left/Left.h"\n',
    "lower/public/Public.h": "",
    "lower/hidden/Hidden.h": '#include "lower/public/Public.h"\n',
}


class RoomsTest(unittest.TestCase):
    def check(self, **changes):
        """Exit status and messages for the tree with some files replaced, by their paths with "_"
        for "/"."""
        with tempfile.TemporaryDirectory() as folder:
            for path, contents in TREE.items():
                file = pathlib.Path(folder, path)
                file.parent.mkdir(parents=True, exist_ok=True)
                changed = changes.get(os.path.splitext(path)[0].replace("/", "_"))
                file.write_text(contents if changed is None else changed, encoding="utf-8")
            done = subprocess.run([CHECK, folder], capture_output=True, text=True, check=False)
        return done.returncode, done.stderr.splitlines()

    def assert_finding(self, result, *parts):
        status, messages = result
        self.assertEqual((status, len(messages)), (1, 1), messages)
        for part in parts:
            self.assertIn(part, messages[0])

    def test_tree_in_order_passes(self):
        self.assertEqual(self.check(), (0, []))

    def test_sources_of_the_project_pass(self):
        done = subprocess.run([CHECK], capture_output=True, text=True, check=False)

        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_include_of_a_higher_room_is_found(self):
        self.assert_finding(self.check(upper_ground_Text='#include "upper/left/Left.h"\n'),
                            "upper/ground/Text.h:1: upper/left/Left.h", "level 2")

    def test_include_between_rooms_of_one_level_is_found(self):
        self.assert_finding(self.check(upper_right_Right='\n#include "upper/left/Left.h"\n'),
                            "upper/right/Right.h:2: upper/left/Left.h", "level 2")

    def test_include_of_a_higher_storey_is_found(self):
        self.assert_finding(self.check(lower_hidden_Hidden='#include "upper/ground/Text.h"\n'),
                            "lower/hidden/Hidden.h:1", "lower/ may not include")

    def test_include_of_a_room_that_another_storey_hides_is_found(self):
        self.assert_finding(self.check(upper_main='#include "lower/hidden/Hidden.h"\n'),
                            "upper/main.cpp:1: lower/hidden/Hidden.h", "upper/ may not include")

    def test_include_that_is_not_from_the_root_is_found(self):
        self.assert_finding(self.check(upper_left_Left='#include "Other.h"\n'),
                            "upper/left/Left.h:1: Other.h", "root")

    def test_room_without_a_row_is_found(self):
        table = ARCHITECTURE.replace("`left/`, ", "")

        self.assert_finding(self.check(docs_architecture=table), "upper/left: is not in the tables")

    def test_row_without_a_room_is_found(self):
        table = ARCHITECTURE.replace("`left/`, ", "`left/`, `gone/`, ")

        self.assert_finding(self.check(docs_architecture=table), "upper/gone: is in the tables")

    def test_missing_tables_are_found(self):
        self.assert_finding(self.check(docs_architecture="# No tables\n"), "tables")


if __name__ == "__main__":
    unittest.main()
