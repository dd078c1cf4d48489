#include "host/message/Recurrence.h"

#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

// What an exception changes (OverrideFlags, MS-OXOCAL 2.2.1.44.2).
enum Override : std::uint16_t {
    HasSubject = 0x0001,
    HasMeetingType = 0x0002,
    HasReminderDelta = 0x0004,
    HasReminder = 0x0008,
    HasLocation = 0x0010,
    HasBusyStatus = 0x0020,
    HasAttachment = 0x0040,
    HasSubType = 0x0080,
    HasColor = 0x0100,
};

// The first writer version with a ChangeHighlight (MS-OXOCAL 2.2.1.44.3).
constexpr std::uint32_t versionWithHighlights = 0x3009;

class Decoder {
public:
    explicit Decoder(std::span<const std::byte> value) : fields(value) {}

    bool decode();

    Recurrence found;
    std::string failure;

private:
    bool fail(const char* text);
    bool takeLayout();
    bool takeDays(std::vector<std::uint32_t>& days);
    bool takeTimes();
    RecurrenceException takeException();
    void takeExtension(RecurrenceException& exception);
    std::uint32_t dword() { return fields.number<std::uint32_t>(); }
    std::u16string narrowText();
    std::u16string wideText();
    void skipBlock() { fields.bytes(dword()); }

    FieldReader fields;
    std::uint32_t writerVersion = 0;
    std::vector<std::uint16_t> overrides; // by exception
};

bool Decoder::fail(const char* text) {
    failure = text;
    return false;
}

bool Decoder::decode() {
    fields.number<std::uint16_t>(); // reader's version
    fields.number<std::uint16_t>(); // writer's version
    found.frequency = fields.number<std::uint16_t>();
    found.patternType = fields.number<std::uint16_t>();
    found.calendarType = fields.number<std::uint16_t>();
    found.firstDateTime = dword();
    found.period = dword();
    found.slidingFlag = dword();
    if (!takeLayout()) {
        return false;
    }
    found.endType = dword();
    found.occurrenceCount = dword();
    found.firstDayOfWeek = dword();
    if (!takeDays(found.deletedDays) || !takeDays(found.modifiedDays)) {
        return false;
    }
    found.startDate = dword();
    found.endDate = dword();
    // A pattern alone is complete too.
    if (fields.isGood() && fields.remaining() > 0 && !takeTimes()) {
        return false;
    }
    if (!fields.isGood()) {
        return fail("it is cut off");
    }
    return fields.remaining() == 0 || fail("it has bytes after its end");
}

// Reads the fields of the pattern type.
bool Decoder::takeLayout() {
    switch (found.patternType) {
    case Recurrence::Day:
        return true;
    case Recurrence::Week:
        found.dayMask = dword();
        return true;
    case Recurrence::MonthDay:
    case Recurrence::MonthEnd:
    case Recurrence::HijriMonthDay:
    case Recurrence::HijriMonthEnd:
        found.dayOfMonth = dword();
        return true;
    case Recurrence::MonthNth:
    case Recurrence::HijriMonthNth:
        found.dayMask = dword();
        found.week = dword();
        return true;
    default:
        return fail("its pattern is of an unknown type");
    }
}

bool Decoder::takeDays(std::vector<std::uint32_t>& days) {
    const std::uint32_t count = dword();
    if (count > fields.remaining() / sizeof count) {
        return fail("it is cut off");
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        days.push_back(dword());
    }
    return true;
}

bool Decoder::takeTimes() {
    dword(); // reader's version
    writerVersion = dword();
    found.startOffset = dword();
    found.endOffset = dword();
    const auto count = fields.number<std::uint16_t>();
    for (unsigned i = 0; i < count && fields.isGood(); ++i) {
        found.exceptions.push_back(takeException());
    }
    skipBlock();
    for (std::size_t i = 0; i < found.exceptions.size() && fields.isGood(); ++i) {
        if (writerVersion >= versionWithHighlights) {
            skipBlock();
        }
        skipBlock();
        if ((overrides[i] & (HasSubject | HasLocation)) != 0) {
            takeExtension(found.exceptions[i]);
        }
    }
    skipBlock();
    return true;
}

RecurrenceException Decoder::takeException() {
    RecurrenceException exception;
    exception.start = dword();
    exception.end = dword();
    exception.originalStart = dword();
    const auto flags = fields.number<std::uint16_t>();
    overrides.push_back(flags);
    const auto take = [&](Override bit, std::optional<std::uint32_t>& field) {
        if ((flags & bit) != 0) {
            field = dword();
        }
    };
    if ((flags & HasSubject) != 0) {
        exception.subject = narrowText();
    }
    take(HasMeetingType, exception.meetingType);
    take(HasReminderDelta, exception.reminderDelta);
    if ((flags & HasReminder) != 0) {
        exception.isReminderSet = dword() != 0;
    }
    if ((flags & HasLocation) != 0) {
        exception.location = narrowText();
    }
    take(HasBusyStatus, exception.busyStatus);
    take(HasAttachment, exception.attachment);
    take(HasSubType, exception.subType);
    take(HasColor, exception.color);
    return exception;
}

// Reads the texts of an exception again, in UTF-16.
void Decoder::takeExtension(RecurrenceException& exception) {
    fields.bytes(3 * sizeof(std::uint32_t)); // the three times again
    if (exception.subject.has_value()) {
        exception.subject = wideText();
    }
    if (exception.location.has_value()) {
        exception.location = wideText();
    }
    skipBlock();
}

// Reads text in the writer's code page, which is not known: each byte is read as Latin-1.
std::u16string Decoder::narrowText() {
    fields.number<std::uint16_t>(); // the length and 1
    const auto length = fields.number<std::uint16_t>();
    std::u16string text;
    for (const std::byte byte : fields.bytes(length)) {
        text += static_cast<char16_t>(byte);
    }
    return text;
}

std::u16string Decoder::wideText() {
    const auto length = fields.number<std::uint16_t>();
    FieldReader units(fields.bytes(2 * std::size_t{length}));
    std::u16string text;
    while (units.remaining() > 0) {
        text += static_cast<char16_t>(units.number<std::uint16_t>());
    }
    return text;
}

} // namespace

std::optional<Recurrence> decodeRecurrence(std::span<const std::byte> value, std::string& failure) {
    Decoder decoder(value);
    if (!decoder.decode()) {
        failure = decoder.failure;
        return std::nullopt;
    }
    return std::move(decoder.found);
}

} // namespace olmhost
