"""Prints the events of an XML file as MarkupReader would report them, by Python's own XML tree.

    independent_events.py ARCHIVE           the names of the archive's .xml entries
    independent_events.py ARCHIVE ENTRY     one entry: a line of JSON for each event
    independent_events.py --extract ARCHIVE ENTRY FILE
"""
import json
import sys
import xml.etree.ElementTree as tree
import zipfile


# The one prefix that needs no declaration; the tree spells it out.
XML_SPACE = "{http://www.w3.org/XML/1998/namespace}"


def report(element):
    attributes = [[name.replace(XML_SPACE, "xml:"), value] for name, value in element.items()]
    print(json.dumps(["<" + element.tag] + attributes))
    text = element.text or ""
    if text and (text.strip(" \t\r\n") or len(element) == 0):
        print(json.dumps(["#" + text]))
    for child in element:
        report(child)
    print(json.dumps(["</" + element.tag]))


def main(arguments):
    if arguments[0] == "--extract":
        with zipfile.ZipFile(arguments[1]) as archive, open(arguments[3], "wb") as out:
            out.write(archive.read(arguments[2]))
        return
    with zipfile.ZipFile(arguments[0]) as archive:
        if len(arguments) == 1:
            for name in archive.namelist():
                if name.endswith(".xml"):
                    print(name)
            return
        report(tree.fromstring(archive.read(arguments[1])))


main(sys.argv[1:])
