"""Extracts archives and compares every byte of every stream, as read by olefile, with the model,
which computes them from the XML alone. The files also pass the container checker, and olecfinfo and
gsf read them."""

import unittest

from extraction import ItemsTest
from olmkit import REAL_ARCHIVE, SAMPLE, needs_real_archive


class SampleTest(ItemsTest):
    def test_mails_match_their_documents(self):
        self.check_items(SAMPLE, "email", 4)

    def test_contacts_match_their_document(self):
        self.check_items(SAMPLE, "contact", 2)

    def test_groups_match_their_document(self):
        self.check_items(SAMPLE, "group", 1)

    def test_appointments_match_their_document(self):
        self.check_items(SAMPLE, "appointment", 2)

    def test_tasks_match_their_document(self):
        self.check_items(SAMPLE, "task", 2)

    def test_notes_match_their_document(self):
        self.check_items(SAMPLE, "note", 2)


@needs_real_archive
class RealArchiveTest(ItemsTest):
    def test_mails_match_their_documents(self):
        self.check_items(REAL_ARCHIVE, "email", 7)

    def test_contacts_match_their_document(self):
        self.check_items(REAL_ARCHIVE, "contact", 5)

    def test_groups_match_their_document(self):
        self.check_items(REAL_ARCHIVE, "group", 2)

    def test_appointments_match_their_document(self):
        self.check_items(REAL_ARCHIVE, "appointment", 8)

    def test_tasks_match_their_document(self):
        self.check_items(REAL_ARCHIVE, "task", 5)

    def test_note_matches_its_document(self):
        self.check_items(REAL_ARCHIVE, "note", 1)


if __name__ == "__main__":
    unittest.main()
