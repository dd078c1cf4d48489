"""Tests of messages of every kind with independent programs."""

import functools
import os
import tempfile

import archive_items
import named_properties
import programs


class MessageTests:
    """Tests the items of some kinds in one archive; a subclass names both."""

    kinds = ()
    item_count = 0
    category_element = None  # name of the element that lists an item's categories
    category_count = 0  # categories of all items

    @classmethod
    def archive(cls, folder):
        """Returns the path of the archive; one made for the tests is written to `folder`."""
        raise NotImplementedError

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = folder.name
        cls.archive_path = cls.archive(cls.folder)
        cls.items = archive_items.extract_items(cls.archive_path, os.path.join(cls.folder, "out"),
                                          cls.kinds)
        for item in cls.items:
            if item.path is None:
                raise AssertionError("a message was not written: " + item.error)

    def setUp(self):
        self.maxDiff = 2000

    @classmethod
    @functools.cache
    def found_by_poi(cls):
        """Returns what POI finds in each message, in the order of the items."""
        return programs.messages_by_poi([item.path for item in cls.items])

    @classmethod
    @functools.cache
    def found_by_olefile(cls):
        """Returns the streams of each message, in the order of the items."""
        return [programs.streams_by_olefile(item.path) for item in cls.items]

    def test_every_item_is_extracted(self):
        self.assertEqual(len(self.items), self.item_count)

    def test_containers_are_valid(self):
        for item in self.items:
            programs.check_container(item.path)

    def test_olecfexport_and_olefile_find_the_same_streams(self):
        for number, (item, streams) in enumerate(zip(self.items, self.found_by_olefile())):
            found = programs.streams_by_olecfexport(item.path,
                                                    os.path.join(self.folder, str(number)))
            self.assertEqual(found, streams, item.path)
            self.assertIn("__properties_version1.0", found)

    def test_poi_and_olefile_find_the_same_properties(self):
        for item, streams, found in zip(self.items, self.found_by_olefile(), self.found_by_poi()):
            expected = programs.streams_in_poi_form(streams)
            self.assertEqual(found["streams"], expected, item.path)
            names = programs.streams_in_poi_form(streams, named_properties.STORAGE)
            self.assertEqual(found["names"], names, item.path)

    def test_every_property_name_is_found_in_its_bucket(self):
        for item, streams in zip(self.items, self.found_by_olefile()):
            names = named_properties.NamedProperties(streams)
            for number, (property_set, name) in enumerate(names.names):
                self.assertEqual(names.property_id(property_set, name),
                                 named_properties.FIRST_ID + number, item.path)
            self.assertEqual(names.bucket_entries(), len(names.names), item.path)

    def test_every_named_property_has_one_name(self):
        for item, streams in zip(self.items, self.found_by_olefile()):
            count = len(named_properties.NamedProperties(streams).names)
            used = {tag >> 16 for tag, _ in programs.entries(streams)
                    if tag >> 16 >= named_properties.FIRST_ID}
            expected = set(range(named_properties.FIRST_ID, named_properties.FIRST_ID + count))
            self.assertEqual(used, expected, item.path)

    def test_categories_are_those_of_the_document(self):
        count = 0
        for item, streams in zip(self.items, self.found_by_olefile()):
            keywords = named_properties.NamedProperties(streams).property_id(
                named_properties.PS_PUBLIC_STRINGS, "Keywords")
            if item.element.find(self.category_element) is None:
                self.assertIsNone(keywords, item.path)
                continue
            names = archive_items.categories_of(item.element, self.category_element)
            values = programs.multiple_values(streams, keywords << 16 | programs.MANY_STRINGS)
            self.assertEqual([value.decode("utf-16-le") for value in values],
                             [name + "\0" for name in names], item.path)
            count += len(names)
        self.assertEqual(count, self.category_count)
