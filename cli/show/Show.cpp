#include "cli/show/Show.h"

#include <algorithm>
#include <memory>

#include "cli/show/BodyText.h"
#include "cli/show/ItemText.h"
#include "cli/show/PropertyTags.h"
#include "cli/terminal/ExtractionText.h"
#include "host/message/PropertyType.h"

namespace olmkit {

namespace {

// Whether a message contains anything from its document. For a number after the last item of a
// document, the message has only what every message of its kind has.
bool hasContent(const olmhost::Message& message) {
    const auto& properties = message.properties();
    return !message.recipients().empty() || !message.attachments().empty() ||
           std::ranges::any_of(properties, [](const olmhost::Property& property) {
               return property.type() == olmhost::PtypTime ||
                      (property.type() == olmhost::PtypString &&
                       property.tag != PidTagMessageClass);
           });
}

} // namespace

ExitCode Show::run() {
    const ExitCode code = show();
    if (exitCodeOf(session.faults()) == ExitCode::Unreadable) {
        messages.faults(options.archive, session);
        return ExitCode::Unreadable;
    }
    return code;
}

ExitCode Show::show() {
    ExitCode code = find();
    if (code == ExitCode::Done) {
        code = extract();
    }
    if (code != ExitCode::Done) {
        return code;
    }
    std::string failure;
    const auto message = olmhost::Message::open(spool.contents(), failure);
    if (spool.errorNumber() != 0) {
        return messages.outputFailure("a temporary file", spool.errorNumber());
    }
    if (message == nullptr) {
        error("the item's message can't be read: " + failure);
        return ExitCode::Partial;
    }
    if (options.place.has_value() && !hasContent(*message) && !isListed()) {
        return refuse(std::string(noItemText));
    }
    code = print(*message);
    return code == ExitCode::Done && hasLosses ? ExitCode::Partial : code;
}

// Lists up to the item, since the module takes only an index that it has listed.
ExitCode Show::find() {
    if (options.place.has_value()) {
        origin.entry = options.place->entry;
        origin.item = options.place->item;
        return ExitCode::Done;
    }
    const olmhost::RowCallback seek = [this](const olmhost::Row& row) {
        if (row.index == options.index) {
            origin = {row.index, row.entry, row.item};
        }
        return row.index < *options.index ? olmhost::RowAnswer::Continue
                                          : olmhost::RowAnswer::Pause;
    };
    const bool isAtEnd = session.list(seek);
    if (exitCodeOf(session.faults()) == ExitCode::Unreadable) {
        return ExitCode::Unreadable;
    }
    if (origin.index.has_value()) {
        return ExitCode::Done;
    }
    if (isAtEnd && !session.isOlmArchive()) {
        return messages.notOlmArchive(options.archive, session);
    }
    messages.faults(options.archive, session);
    error("there is no item " + std::to_string(*options.index) + ": the archive has " +
          std::to_string(session.itemCount()) + ", numbered from 0");
    return ExitCode::Partial;
}

// Returns whether the list has an item at the place.
bool Show::isListed() {
    bool isFound = false;
    session.list([&](const olmhost::Row& row) {
        isFound = isFound || (row.entry == origin.entry && row.item == origin.item);
        return row.entry < origin.entry ? olmhost::RowAnswer::Continue : olmhost::RowAnswer::Pause;
    });
    return isFound;
}

ExitCode Show::extract() {
    const olmhost::Extraction extraction =
        origin.index.has_value() ? session.extract(*origin.index, spool)
                                 : session.extractAt(origin.entry, origin.item, spool);
    if (exitCodeOf(session.faults()) == ExitCode::Unreadable) {
        return ExitCode::Unreadable;
    }
    reportLosses(extraction);
    return judge(extraction);
}

ExitCode Show::judge(const olmhost::Extraction& extraction) {
    switch (extraction.end) {
    case olmhost::ExtractionEnd::Whole:
        return ExitCode::Done;
    case olmhost::ExtractionEnd::SinkFailed:
        return messages.outputFailure("a temporary file", spool.errorNumber());
    case olmhost::ExtractionEnd::UnknownRoot:
        return refuse(std::string(notADocumentText));
    case olmhost::ExtractionEnd::Cancelled:
    case olmhost::ExtractionEnd::NotBegun:
    case olmhost::ExtractionEnd::Refused:
        break;
    }
    return refuse(refusalText(extraction, session, origin.entry));
}

// Reports why nothing is shown: this text, or that the archive is not an OLM archive at all.
ExitCode Show::refuse(const std::string& text) {
    while (
        !session.list([](const olmhost::Row& /*row*/) { return olmhost::RowAnswer::Continue; })) {
    }
    if (!session.isOlmArchive()) {
        return messages.notOlmArchive(options.archive, session);
    }
    error("number " + std::to_string(origin.item) + " in " + entryTitle(session, origin.entry) +
          ": " + text);
    return ExitCode::Partial;
}

// Reports what the message lacks, and what may be wrong in it.
void Show::reportLosses(const olmhost::Extraction& extraction) {
    const auto reportLoss = [this](const std::string& text) {
        error(text);
        hasLosses = true;
    };
    for (const olmhost::MemberRead& member : extraction.members) {
        if (!member.fault.empty()) {
            reportLoss(attachmentLoss(member));
        }
    }
    for (const olmhost::EntryFault& fault : extraction.faults) {
        if (fault.entryIndex == origin.entry) {
            reportLoss(entryTitle(session, origin.entry) + ": " + fault.text);
        }
    }
    if (extraction.isCut) {
        reportLoss(std::string(cutText));
    }
}

ExitCode Show::print(const olmhost::Message& message) {
    if (options.form == ShowForm::Body) {
        const std::string body = bodyText(message);
        if (body.empty()) {
            error("the item has no text; without --body, show prints what it has");
            return ExitCode::Partial;
        }
        output.buffer() += body;
    } else {
        const JsonObject described = describeItem(origin, message);
        if (options.form == ShowForm::Json) {
            appendShown(output.buffer(), described);
        } else {
            ItemText(output.buffer(), output.terminalWidth())
                .write(described, session.entryName(origin.entry));
        }
    }
    return output.finish(ExitCode::Done, messages);
}

void Show::error(const std::string& text) {
    messages.error(archiveTitle(options.archive) + ": " + text);
}

} // namespace olmkit
