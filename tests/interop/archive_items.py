"""Extracts an archive and pairs each message with the XML element that it was made from."""

import datetime
import os
import typing
import unicodedata
import xml.etree.ElementTree as ElementTree
import zipfile

import olmkit


class Item(typing.NamedTuple):
    element: ElementTree.Element
    path: str  # of its message; None if it was not written
    error: str  # None if it was


def extract_items(archive, folder, kinds):
    """Returns every item of the kinds ("email", "contact", …), in the archive's order."""
    rows = {(row["entry"], row["item"]): row for row in olmkit.extract(archive, folder)}
    items = []
    with zipfile.ZipFile(archive) as contents:
        for index, info in enumerate(contents.infolist()):
            if not info.filename.endswith(".xml"):
                continue
            for number, element in enumerate(ElementTree.fromstring(contents.read(info)), 1):
                if element.tag in kinds:
                    row = rows[index, number]
                    path = row["path"] and os.path.join(folder, row["path"])
                    items.append(Item(element, path, row["error"]))
    return items


def text_of(item, name):
    """Returns the text of the item's element of that name; None without such an element."""
    element = item.find(name)
    return None if element is None else element.text or ""


def time_of(item, name):
    """Returns the time of an element as it is in a message, one second before that in the document,
    in milliseconds since 1970; None without such an element."""
    text = text_of(item, name)
    if text is None:
        return None
    since = datetime.datetime.fromisoformat(text) - datetime.datetime(1970, 1, 1)
    return since // datetime.timedelta(milliseconds=1) - 1000


def addresses_of(item, name):
    """Returns (display name, address) of each address in an element; "" for a missing part."""
    return [(person.get("OPFContactEmailAddressName", ""),
             person.get("OPFContactEmailAddressAddress", ""))
            for person in item.iterfind(name + "/*")]


def categories_of(item, name):
    return [category.get("OPFCategoryCopyName") for category in item.iterfind(name + "/*")]


def attachment_bytes(archive, url):
    """Returns the bytes of the entry that an attachment names; None if it is not in the archive."""
    def plain(name):
        name = name.replace("\\", "/")
        return unicodedata.normalize("NFC", name[1:] if name.startswith("/") else name)

    with zipfile.ZipFile(archive) as contents:
        for info in contents.infolist():
            if plain(info.filename) == plain(url):
                return contents.read(info)
    return None
