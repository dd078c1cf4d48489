"""Builds archives with contents that the sample doesn't have."""

import xml.sax.saxutils
import zipfile


def tag(name, attributes=None, inner=""):
    """Returns an element; attributes that are None are left out."""
    written = "".join(" %s=%s" % (key, xml.sax.saxutils.quoteattr(value))
                      for key, value in (attributes or {}).items() if value is not None)
    return "<%s%s>%s</%s>" % (name, written, inner, name)


def leaf(name, text):
    return tag(name, inner=xml.sax.saxutils.escape(text))


def address(name, mail_address, kind=None):
    return tag("emailAddress", {"OPFContactEmailAddressName": name,
                                "OPFContactEmailAddressAddress": mail_address,
                                "OPFContactEmailAddressType": kind})


def categories(element, *names):
    return tag(element, inner="".join(tag("category", {"OPFCategoryCopyName": name})
                                      for name in names))


def write_archive(path, entries):
    """Writes an archive of entries, name to content. Returns its path."""
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as contents:
        for name, content in entries.items():
            contents.writestr(name, content)
    return path
