#!/usr/bin/python3
"""Prints what olefile finds in a compound file as one JSON object.

    read_compound.py FILE

A stream is "path": {"size": bytes, "sha256": hexadecimal}; a storage is "path/": {"classId": text},
the root is "/". Names in a path are joined by "/". The exit status is 1 when olefile finds any
defect, 2 on wrong usage. It needs Debian's python3-olefile, hence /usr/bin/python3.
"""

import hashlib
import json
import sys

import olefile


def members(storage, path):
    """Yields every storage and stream below, with its path; `path` ends in "/" or is empty."""
    pending = [(storage, path)]
    while pending:
        parent, prefix = pending.pop()
        for entry in parent.kids:
            if entry.entry_type == olefile.STGTY_STREAM:
                yield entry, prefix + entry.name
            else:
                yield entry, prefix + entry.name + "/"
                pending.append((entry, prefix + entry.name + "/"))


def read_message(path):
    """Returns the bytes of streams and the class ids of storages, by path. Paths of storages end
    in "/"."""
    with olefile.OleFileIO(path, raise_defects=olefile.DEFECT_INCORRECT) as container:
        streams, storages = {}, {"/": container.root.clsid}
        for entry, name in members(container.root, ""):
            if entry.entry_type == olefile.STGTY_STREAM:
                # By its start: looking up each path would take quadratic time.
                streams[name] = container._open(entry.isectStart, entry.size).read()
            else:
                storages[name] = entry.clsid
        return streams, storages


def main(arguments):
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        streams, storages = read_message(arguments[0])
    except OSError as error:
        print("%s: %s" % (arguments[0], error), file=sys.stderr)
        return 1
    found = {path: {"classId": class_id} for path, class_id in storages.items()}
    for path, data in streams.items():
        found[path] = {"size": len(data), "sha256": hashlib.sha256(data).hexdigest()}
    json.dump(found, sys.stdout, indent=0, sort_keys=True)
    print()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
