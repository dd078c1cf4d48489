"""What README.md and the documents say, compared with the program and the tree."""

import os
import pathlib
import re
import subprocess
import unittest

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
PROGRAM = os.path.join(os.environ["OLMKIT_BINARY_DIR"], "bin", "olmkit")


def table_rows(text, first_header):
    """The cells of each row of the table whose first column has that header."""
    lines = iter(text.splitlines())
    for line in lines:
        if line.startswith(f"| {first_header} |"):
            next(lines)  # the line of dashes
            break
    for line in lines:
        if not line.startswith("|"):
            return
        yield [cell.strip() for cell in line.strip("|").split("|")]


class ReadmeTest(unittest.TestCase):
    def test_exit_statuses_are_those_of_the_help_row_by_row(self):
        with open(os.path.join(SOURCE, "README.md"), encoding="utf-8") as readme:
            described = list(table_rows(readme.read(), "Exit status"))
        help_text = subprocess.run([PROGRAM, "--help"], check=True, capture_output=True,
                                   text=True).stdout
        printed = re.findall(r"^ +(\d+) +(\S.*)$", help_text, re.MULTILINE)

        self.assertGreaterEqual(len(printed), 8)
        self.assertEqual(described, [list(row) for row in printed])

    def test_links_of_the_documents_lead_to_files(self):
        root = pathlib.Path(SOURCE)
        documents = [*root.glob("*.md"), *root.glob("docs/*.md")]
        links = [(document, link) for document in documents for link in
                 re.findall(r"\]\(([^)#:]+)\)", document.read_text(encoding="utf-8"))]

        self.assertGreater(len(links), 20)
        self.assertEqual([(document.name, link) for document, link in links
                          if not (document.parent / link).is_file()], [])


if __name__ == "__main__":
    unittest.main()
