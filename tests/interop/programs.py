"""Runs independent programs on messages and returns what they find as Python values."""

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
STRING, MANY_STRINGS = 0x001F, 0x101F
MULTIPLE_VALUES = 0x1000  # bit of a type


def run(*command, **settings):
    """Runs a program that must succeed. Returns its standard output."""
    # Java and Perl decode paths according to the locale.
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
    """Returns every stream by its path, names joined by "/"."""
    return read_compound.read_message(path)[0]


def text_stream(streams, tag):
    """Returns the text of a string property; None if the message lacks it."""
    data = streams.get("__substg1.0_%08X" % tag)
    return None if data is None else data.decode("utf-16-le")


def multiple_values(streams, tag):
    """Returns the values of a multi-valued property, checked against their lengths; None if the
    message lacks it."""
    name = "__substg1.0_%08X" % tag
    if name not in streams:
        return None
    # MS-OXMSG 2.1.4: a string's length has 4 bytes, a binary value's 4 and 4 unused ones.
    record = "<I" if tag & 0xFFFF == MANY_STRINGS else "<II"
    lengths = [row[0] for row in struct.iter_unpack(record, streams[name])]
    values = [streams["%s-%08X" % (name, index)] for index in range(len(lengths))]
    if [len(value) for value in values] != lengths:
        raise AssertionError("%s: listed lengths %s, actual lengths %s" % (
            name, lengths, [len(value) for value in values]))
    if "%s-%08X" % (name, len(lengths)) in streams:
        raise AssertionError("%s: more values than lengths" % name)
    return values


def entries(streams):
    """Returns (tag, value field) of each entry in the message's property stream."""
    return [(tag, value) for tag, _, value in
            struct.iter_unpack("<II8s", streams["__properties_version1.0"][32:])]


# olecfexport


def streams_by_olecfexport(path, folder):
    """Returns every stream by its path, names joined by "/"."""
    run("olecfexport", "-t", folder, path)
    top = folder + ".export"
    found = {}
    for place, folders, files in os.walk(top):
        # Every stream becomes a folder with one file; so does every storage, with an empty file.
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
    """Returns the last of the names of an attachment: if there are two, the first is ASCII only."""
    names = [value for key, value in part.get_params(header="content-disposition")
             if key == "filename"]
    return email.utils.collapse_rfc2231_value(names[-1])


def mail_by_msgconvert(path, target):
    # It writes both bytes and characters to one handle. With this setting each becomes a character
    # of UTF-8 text; otherwise that depends on the rest of the mail.
    run("msgconvert", "--outfile", target, path, PERL_UNICODE="o")
    with open(target, encoding="utf-8", newline="") as file:
        text = file.read()
    head, _, _ = text.partition("\r\n\r\n")
    headers = {}
    for line in head.replace("\r\n ", " ").split("\r\n"):  # long ones are folded at a space
        name, _, value = line.partition(": ")
        headers[name.lower()] = value
    # After the headers each character is a byte.
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
    """Returns what ReadMessage.java prints for each path, in one run."""
    output = run("java", "-XX:TieredStopAtLevel=1", "-cp", POI,
                 os.path.join(HERE, "ReadMessage.java"), *paths)
    found = [json.loads(line) for line in output.splitlines()]
    if len(found) != len(paths):
        raise AssertionError("POI read %d of %d messages" % (len(found), len(paths)))
    return found


def streams_in_poi_form(streams, storage=""):
    """Returns the single-valued properties in olefile's streams of a storage, in POI's form."""
    found = {}
    for name, data in streams.items():
        # POI ignores streams of multi-valued types.
        match = re.fullmatch(re.escape(storage) + "__substg1[.]0_([0-9A-F]{4})(001F|0102)", name)
        if match:
            is_text = match[2] == "001F"
            # It removes a terminator, which only the display lists have.
            found[match[1] + match[2]] = (
                data.decode("utf-16-le").removesuffix("\0") if is_text else data.hex())
    return found
