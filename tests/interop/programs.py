"""Programs that are not ours read messages: what they find, as Python values."""

import email
import email.utils
import json
import os
import re
import struct
import subprocess
import sys
import typing

import read_compound

HERE = os.path.dirname(os.path.abspath(__file__))
POI = "/usr/share/java/poi.jar:/usr/share/java/poi-scratchpad.jar"

# Types of properties.
STRING, MANY_STRINGS, MANY_BINARIES = 0x001F, 0x101F, 0x1102


def run(*command, **settings):
    """Runs a program that must succeed and gives its standard output."""
    # Java and Perl take paths by the locale.
    environment = dict(os.environ, LC_ALL="C.UTF-8", **settings)
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment,
                          check=False)
    if done.returncode != 0:
        raise AssertionError("%s: exit status %d: %s" % (
            command[0], done.returncode, done.stderr.decode("utf-8", "replace")))
    return done.stdout


def check_container(path):
    run(sys.executable, os.path.join(HERE, "check_compound.py"), path)


# olefile


def streams_by_olefile(path):
    """Every stream by its path, names joined by "/"."""
    return read_compound.read_message(path)[0]


def text_stream(streams, tag):
    """The text of a string property; None when the message has none."""
    data = streams.get("__substg1.0_%08X" % tag)
    return None if data is None else data.decode("utf-16-le")


def multiple_values(streams, tag):
    """The values of a multi-valued property, checked against their lengths; None without one."""
    name = "__substg1.0_%08X" % tag
    if name not in streams:
        return None
    # MS-OXMSG: the length of a string takes 4 bytes, that of a binary value 4 and 4 unused.
    record = "<I" if tag & 0xFFFF == MANY_STRINGS else "<II"
    lengths = [row[0] for row in struct.iter_unpack(record, streams[name])]
    values = [streams["%s-%08X" % (name, index)] for index in range(len(lengths))]
    if [len(value) for value in values] != lengths:
        raise AssertionError("%s: lengths are %s, values have %s" % (
            name, lengths, [len(value) for value in values]))
    if "%s-%08X" % (name, len(lengths)) in streams:
        raise AssertionError("%s: more values than lengths" % name)
    return values


def entries(streams):
    """(tag, value field) of each entry of the message's property stream."""
    return [(tag, value) for tag, _, value in
            struct.iter_unpack("<II8s", streams["__properties_version1.0"][32:])]


# olecfexport


def streams_by_olecfexport(path, folder):
    """Every stream by its path, names joined by "/"."""
    run("olecfexport", "-t", folder, path)
    top = folder + ".export"
    found = {}
    for place, folders, files in os.walk(top):
        # Every stream becomes a folder that holds one file; so does, with an empty file, a storage.
        if files and not folders:
            with open(os.path.join(place, "StreamData.bin"), "rb") as file:
                found[os.path.relpath(place, top)] = file.read()
    return found


# msgconvert


class ConvertedMail(typing.NamedTuple):
    headers: dict  # of the whole mail: lower-case name to text
    bodies: dict  # "text/plain", "text/html" to bytes
    attachments: list  # (name, type, bytes)


def file_name(part):
    """Of the two that a mail may tell, the one behind: the first is made of ASCII alone."""
    names = [value for key, value in part.get_params(header="content-disposition")
             if key == "filename"]
    return email.utils.collapse_rfc2231_value(names[-1])


def mail_by_msgconvert(path, target):
    # It writes bytes and characters to one handle. With this setting every one of them becomes one
    # character of UTF-8 text; without it that depends on what else is in the mail.
    run("msgconvert", "--outfile", target, path, PERL_UNICODE="o")
    with open(target, encoding="utf-8", newline="") as file:
        text = file.read()
    head, _, _ = text.partition("\r\n\r\n")
    headers = {}
    for line in head.replace("\r\n ", " ").split("\r\n"):  # long ones are folded at a space
        name, _, value = line.partition(": ")
        headers[name.lower()] = value
    # Behind the headers each character stands for a byte again.
    parsed = email.message_from_bytes(text.encode("latin-1", "replace"))
    bodies = {}
    attachments = []
    for part in parsed.walk():
        if part.is_multipart():
            continue
        data = part.get_payload(decode=True)
        if part.get_content_disposition() == "attachment":
            attachments.append((file_name(part), part.get_content_type(), data))
        else:
            bodies[part.get_content_type()] = data
    return ConvertedMail(headers, bodies, attachments)


# Apache POI


def messages_by_poi(paths):
    """What ReadMessage.java prints, for each path: one run for all."""
    output = run("java", "-XX:TieredStopAtLevel=1", "-cp", POI,
                 os.path.join(HERE, "ReadMessage.java"), *paths)
    found = [json.loads(line) for line in output.splitlines()]
    if len(found) != len(paths):
        raise AssertionError("POI read %d of %d messages" % (len(found), len(paths)))
    return found


def streams_as_poi_has_them(streams, storage=""):
    """The single-valued properties of a storage out of olefile's streams, in POI's form."""
    found = {}
    for name, data in streams.items():
        # POI knows no multi-valued types: it passes these streams over.
        match = re.fullmatch(re.escape(storage) + "__substg1[.]0_([0-9A-F]{4})(001F|0102)", name)
        if match:
            is_text = match[2] == "001F"
            # It takes a terminator off, which only the display lists have.
            found[match[1] + match[2]] = (
                data.decode("utf-16-le").removesuffix("\0") if is_text else data.hex())
    return found
