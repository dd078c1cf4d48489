"""Extracts an archive and brings each message together with the element that it was made from."""

import datetime
import os
import typing
import unicodedata
import xml.etree.ElementTree as ElementTree
import zipfile

import olmkit


class Item(typing.NamedTuple):
    element: ElementTree.Element
    path: str  # of its message; None when none was written
    error: str  # None when one was


def extract_items(archive, folder, kinds):
    """Every item of these kinds ("email", "contact", …), in the archive's order."""
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
    """The text of the item's element of this name; None when there is no such element."""
    element = item.find(name)
    return None if element is None else element.text or ""


def time_of(item, name):
    """The element's time as messages have it, one second ahead of what the document tells: in
    milliseconds since 1970. None when there is no such element."""
    text = text_of(item, name)
    if text is None:
        return None
    since = datetime.datetime.fromisoformat(text) - datetime.datetime(1970, 1, 1)
    return since // datetime.timedelta(milliseconds=1) - 1000


def addresses_of(item, name):
    """(display name, address) of everyone in this element; "" for what isn't told."""
    return [(person.get("OPFContactEmailAddressName", ""),
             person.get("OPFContactEmailAddressAddress", ""))
            for person in item.iterfind(name + "/*")]


def categories_of(item, name):
    return [category.get("OPFCategoryCopyName") for category in item.iterfind(name + "/*")]


def attachment_bytes(archive, url):
    """The bytes of the entry that an attachment names; None when the archive has none."""
    def plain(name):
        name = name.replace("\\", "/")
        return unicodedata.normalize("NFC", name[1:] if name.startswith("/") else name)

    with zipfile.ZipFile(archive) as contents:
        for info in contents.infolist():
            if plain(info.filename) == plain(url):
                return contents.read(info)
    return None
