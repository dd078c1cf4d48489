"""Counts what is in an archive with independent readers, and makes random archives."""

import random
import xml.etree.ElementTree
import zipfile

ROOTS = {"emails": "email", "appointments": "appointment", "contacts": "contact",
         "groups": "group", "tasks": "task", "notes": "note"}
# The kind of the rows of each kind of item.
ROW_KINDS = {kind: "contact" if kind == "group" else kind for kind in ROOTS.values()}


def documents(path):
    """Yields (entry, its name, its root element) for each ".xml" entry."""
    with zipfile.ZipFile(path) as archive:
        for entry, info in enumerate(archive.infolist()):
            if info.filename.endswith(".xml"):
                yield entry, info.filename, xml.etree.ElementTree.fromstring(archive.read(info))


def count_items(path):
    """Returns a dictionary of kind to [documents, items]."""
    counts = {kind: [0, 0] for kind in ROOTS.values()}
    for _, _, root in documents(path):
        if root.tag in ROOTS:
            kind = ROOTS[root.tag]
            counts[kind][0] += 1
            counts[kind][1] += len(root.findall(kind))
    return counts


def attachment_urls(path):
    """Returns the URL of each attachment of a mail, None for an attachment without a URL."""
    return [attachment.get("OPFAttachmentURL") for _, _, root in documents(path)
            if root.tag == "emails"
            for attachment in root.findall("email/OPFMessageCopyAttachmentList/*")]


def random_archive(test, seed):
    """Makes an archive of whole documents. In one of four, other elements are between the items, or
    elements with the name of an item are inside of items."""
    rolls = random.Random(seed)
    files = [(f"d/{number}.bin", rolls.randbytes(rolls.randrange(5000))) for number in range(5)]
    folders = ["", "Local/Notes/", "Accounts/a@x/Box/", "Local/deep/er/and/deeper/"]
    entries = []

    def attachment():
        url = rolls.choice([f' OPFAttachmentURL="d/{rolls.randrange(6)}.bin"', ""])
        return f'<messageAttachment{url} OPFAttachmentName="n"/>'

    def item(kind):
        inside = "<other>" + "x" * rolls.choice([0, 1, 700, 40000]) + "</other>"
        if kind == "email" and rolls.random() < 0.5:
            inside += ("<OPFMessageCopyAttachmentList>" +
                       "".join(attachment() for _ in range(rolls.randrange(4))) +
                       "</OPFMessageCopyAttachmentList>")
        return f"<{kind}>{inside}</{kind}>"

    for number in range(rolls.randrange(1, 12)):
        root = rolls.choice([*ROOTS, "categories", "html"])
        kind = ROOTS.get(root, "thing")
        parts = [item(kind) for _ in range(rolls.choice([0, 1, 1, 2, 9]))]
        if rolls.random() < 0.25:
            stranger = rolls.choice(["<stranger/>", f"<stranger><{kind}/></stranger>",
                                     f"<{kind}><a><{kind}/></a></{kind}>", "<email/>"])
            parts.insert(rolls.randrange(len(parts) + 1), stranger)
        suffix = rolls.choice([".xml"] * 9 + [".xml.xml"])
        entries.append((f"{rolls.choice(folders)}{number}{suffix}",
                        f"<{root}>" + rolls.choice(["", "\n "]).join(parts) + f"</{root}>"))
    # The first entry makes it an OLM archive whatever else is in it.
    return test.archive(("Categories.xml", "<categories/>"), *files, *entries,
                        name=f"random-{seed}.olm",
                        method=rolls.choice([zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED]))
