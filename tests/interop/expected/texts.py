"""Converts texts to numbers, booleans and dates."""

import re

WHITE_SPACE = " \t\n\v\f\r"
MIN_LONG, MAX_LONG = -(1 << 63), (1 << 63) - 1
MAX_DIGITS = 19  # of a number of 64 bits

NUMBER = re.compile(r"[ \t\n\v\f\r]*([+-]?)([0-9]+)(?:\.([0-9]+))?(?:[Ee]([+-]?[0-9]+))?")
WORD = re.compile(r"[ \t\n\v\f\r]*([A-Za-z]*)")


def to_long(text, start=0):
    """Returns the number at `start`: exact, truncated toward zero, saturated to 64 bits."""
    if start < 0 or start >= len(text):
        return 0
    found = NUMBER.match(text, start)
    if not found:
        return 0
    sign, whole, fraction, exponent = found.groups(default="")
    digits = (whole + fraction).lstrip("0")
    if not digits:
        return 0
    point = len(digits) - len(fraction) + int(exponent or "0")  # digits before the point
    if point > MAX_DIGITS:
        magnitude = MAX_LONG + 1
    else:
        magnitude = int((digits + "0" * max(0, point - len(digits)))[: max(0, point)] or "0")
    return max(MIN_LONG, -magnitude) if sign == "-" else min(MAX_LONG, magnitude)


def to_boolean(text):
    word = WORD.match(text).group(1).lower()
    return word in ("true", "yes") or to_long(text) != 0


def signed32(number):
    return (number + 0x80000000) % 0x100000000 - 0x80000000


def unsigned32(number):
    return number % 0x100000000


def divided(number, divisor):
    """Divides and truncates toward zero, as C does."""
    quotient = abs(number) // divisor
    return quotient if number >= 0 else -quotient


DAY = 24 * 60 * 60 * 1000
UNIX_EPOCH = 719162  # days from 0001-01-01 to 1970-01-01
UNITS_PER_MILLISECOND = 10_000
EARLY_EPOCH = 116_444_735_990_000_000  # units from 1601 to one second before 1970
MONTH_DAYS = (31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31)

ZONE = r"(?P<zone>Z|[+-][0-9]{2}(?::?[0-9]{2})?)?"
FRACTION = r"(?:[.,](?P<fraction>[0-9]+))?"
DASHED = re.compile(
    r"(?P<year>[0-9]{4})-(?P<month>[0-9]{2})-(?P<day>[0-9]{2})"
    r"(?:[T ](?P<hour>[0-9]{2}):(?P<minute>[0-9]{2})(?::(?P<second>[0-9]{2})" + FRACTION + r")?)?"
    + ZONE
)
COMPACT = re.compile(
    r"(?P<year>[0-9]{4})(?P<month>[0-9]{2})(?P<day>[0-9]{2})"
    r"(?:T(?P<hour>[0-9]{2})(?P<minute>[0-9]{2})(?P<second>[0-9]{2})" + FRACTION + ZONE + r")?"
)


def is_leap(year):
    return year % 4 == 0 and (year % 100 != 0 or year % 400 == 0)


def days_of(year, month, day=1):
    """Returns days since 1970 in the proleptic Gregorian calendar; months may exceed 12."""
    year, month = year + (month - 1) // 12, (month - 1) % 12 + 1
    before = year - 1
    days = before * 365 + before // 4 - before // 100 + before // 400
    days += sum(MONTH_DAYS[: month - 1]) + (month > 2 and is_leap(year))
    return days + day - 1 - UNIX_EPOCH


NO_DATE = days_of(1601, 1) * DAY + 1000


def zone_minutes(zone):
    """Returns the minutes that a zone is ahead of UTC; None for an invalid zone."""
    if not zone or zone == "Z":
        return 0
    digits = zone[1:].replace(":", "")
    hours, minutes = int(digits[:2]), int(digits[2:] or "0")
    if hours > 23 or minutes > 59:
        return None
    return (hours * 60 + minutes) * (-1 if zone[0] == "-" else 1)


def milliseconds(text):
    """Returns a date in milliseconds since 1970; NO_DATE for an invalid one."""
    text = text.strip(WHITE_SPACE)
    found = DASHED.fullmatch(text) or COMPACT.fullmatch(text)
    if not found:
        return NO_DATE
    year, month, day, hour, minute, second = (
        int(found[name] or "0") for name in ("year", "month", "day", "hour", "minute", "second")
    )
    fraction = int((found["fraction"] or "")[:3].ljust(3, "0"))
    offset = zone_minutes(found["zone"])
    if year < 1 or not 1 <= month <= 12 or offset is None:
        return NO_DATE
    if not 1 <= day <= MONTH_DAYS[month - 1] + (month == 2 and is_leap(year)):
        return NO_DATE
    if hour > 24 or minute > 59 or second > 60 or hour == 24 and (minute or second or fraction):
        return NO_DATE
    seconds = (hour * 60 + minute - offset) * 60 + second
    return days_of(year, month, day) * DAY + seconds * 1000 + fraction


def file_time(text):
    """Returns the value of a time property: one second early, in 100 ns units since 1601."""
    return (milliseconds(text) * UNITS_PER_MILLISECOND + EARLY_EPOCH) % (1 << 64)
