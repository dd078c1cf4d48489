#!/usr/bin/python3
"""Prints what olefile finds in a compound file, as one JSON object.

    read_compound.py FILE

A stream is "path": {"size": bytes, "sha256": hexadecimal}; a storage is "path/": {"classId": text},
the root "/". Names in a path are joined by "/". Exit status 1 when olefile finds the file
incorrect in any way, 2 on wrong usage. It takes Debian's python3-olefile, so it is run by /usr/bin/python3.
"""

import hashlib
import json
import sys

import olefile


def members(storage, path):
    """Every storage and stream below, with its path; `path` ends in "/" or is empty."""
    pending = [(storage, path)]
    while pending:
        parent, prefix = pending.pop()
        for entry in parent.kids:
            if entry.entry_type == olefile.STGTY_STREAM:
                yield entry, prefix + entry.name
            else:
                yield entry, prefix + entry.name + "/"
                pending.append((entry, prefix + entry.name + "/"))


def described(container, entry):
    if entry.entry_type != olefile.STGTY_STREAM:
        return {"classId": entry.clsid}
    # By its place: looking each path up would take time by the square of their number.
    data = container._open(entry.isectStart, entry.size).read()
    return {"size": len(data), "sha256": hashlib.sha256(data).hexdigest()}


def main(arguments):
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        with olefile.OleFileIO(arguments[0], raise_defects=olefile.DEFECT_INCORRECT) as container:
            found = {"/": described(container, container.root)}
            for entry, path in members(container.root, ""):
                found[path] = described(container, entry)
    except OSError as error:
        print("%s: %s" % (arguments[0], error), file=sys.stderr)
        return 1
    json.dump(found, sys.stdout, indent=0, sort_keys=True)
    print()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
