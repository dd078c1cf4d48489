#include "cli/command/ShowCommand.h"

#include <algorithm>
#include <memory>

#include "cli/command/ArchiveInput.h"
#include "cli/show/BodyText.h"
#include "cli/show/ItemDescription.h"
#include "cli/show/ItemText.h"
#include "cli/terminal/ExtractionText.h"
#include "cli/terminal/Interrupt.h"
#include "host/message/Message.h"
#include "host/message/MessageSpool.h"
#include "host/message/PropertyType.h"
#include "host/session/Session.h"

namespace olmkit {

namespace {

// Whether a message holds anything that its document told. A number past the last item of its
// document gives one that holds only what every message of its kind does.
bool hasContent(const olmhost::Message& message) {
    constexpr std::uint32_t messageClass = 0x001A001F;
    const auto& properties = message.properties();
    return !message.recipients().empty() || !message.attachments().empty() ||
           std::ranges::any_of(properties, [](const olmhost::Property& property) {
               return property.type() == olmhost::PtypTime ||
                      (property.type() == olmhost::PtypString && property.tag != messageClass);
           });
}

// Shows one item of an open archive.
class Show {
public:
    Show(const ShowOptions& options, olmhost::Session& session, Output& output, Messages& messages)
        : options(options), session(session), output(output), messages(messages) {}

    ExitCode run();

private:
    ExitCode find();
    bool isThere();
    ExitCode extract();
    ExitCode judge(const olmhost::Extraction& extraction);
    ExitCode refuse(const std::string& text);
    void tellLosses(const olmhost::Extraction& extraction);
    ExitCode write(const olmhost::Message& message);
    void tell(const std::string& text) {
        messages.error(archiveTitle(options.archive) + ": " + text);
    }

    const ShowOptions& options;
    olmhost::Session& session;
    Output& output;
    Messages& messages;
    ItemOrigin origin;
    olmhost::MessageSpool spool;
    bool hasLosses = false;
};

ExitCode Show::run() {
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
        messages.outputFailure("a temporary file", spool.errorNumber());
        return ExitCode::OutputFailed;
    }
    if (message == nullptr) {
        tell("the item's message can't be read: " + failure);
        return ExitCode::Partial;
    }
    if (options.place.has_value() && !hasContent(*message) && !isThere()) {
        return refuse(std::string(noItemText));
    }
    code = write(*message);
    return code == ExitCode::Done && hasLosses ? ExitCode::Partial : code;
}

// Lists up to the item, as the module takes no index that it has not listed.
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
    if (origin.index.has_value()) {
        return ExitCode::Done;
    }
    if (isAtEnd && !session.isOlmArchive()) {
        messages.noOlmArchive(options.archive, session);
        return ExitCode::NotAnArchive;
    }
    messages.faults(options.archive, session);
    tell("there is no item " + std::to_string(*options.index) + ": the archive has " +
         std::to_string(session.itemCount()) + ", numbered from 0");
    return ExitCode::Partial;
}

// Whether the list has an item at the place.
bool Show::isThere() {
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
    tellLosses(extraction);
    return judge(extraction);
}

ExitCode Show::judge(const olmhost::Extraction& extraction) {
    switch (extraction.end) {
    case olmhost::ExtractionEnd::Whole:
        return ExitCode::Done;
    case olmhost::ExtractionEnd::SinkFailed:
        messages.outputFailure("a temporary file", spool.errorNumber());
        return ExitCode::OutputFailed;
    case olmhost::ExtractionEnd::UnknownRoot:
        return refuse(std::string(notADocumentText));
    case olmhost::ExtractionEnd::Cancelled:
    case olmhost::ExtractionEnd::NotBegun:
    case olmhost::ExtractionEnd::Refused:
        break;
    }
    return refuse(refusalText(extraction, session, origin.entry));
}

// Nothing is shown, for this reason, or because the whole archive is of another kind.
ExitCode Show::refuse(const std::string& text) {
    while (
        !session.list([](const olmhost::Row& /*row*/) { return olmhost::RowAnswer::Continue; })) {
    }
    if (!session.isOlmArchive()) {
        messages.noOlmArchive(options.archive, session);
        return ExitCode::NotAnArchive;
    }
    tell("number " + std::to_string(origin.item) + " in " + entryTitle(session, origin.entry) +
         ": " + text);
    return ExitCode::Partial;
}

// What the message lacks, and what may be wrong in it.
void Show::tellLosses(const olmhost::Extraction& extraction) {
    const auto tellLoss = [this](const std::string& text) {
        tell(text);
        hasLosses = true;
    };
    for (const olmhost::MemberRead& member : extraction.members) {
        if (!member.fault.empty()) {
            tellLoss(attachmentLoss(member));
        }
    }
    for (const olmhost::EntryFault& fault : extraction.faults) {
        if (fault.entryIndex == origin.entry) {
            tellLoss(entryTitle(session, origin.entry) + ": " + fault.text);
        }
    }
    if (extraction.isCut) {
        tellLoss(std::string(cutText));
    }
}

ExitCode Show::write(const olmhost::Message& message) {
    if (options.form == ShowForm::Body) {
        const std::string body = bodyText(message);
        if (body.empty()) {
            tell("the item has no text; without --body, show tells what it has");
            return ExitCode::Partial;
        }
        output.buffer() += body;
    } else {
        const JsonObject described = describeItem(origin, message);
        if (options.form == ShowForm::Json) {
            appendLine(output.buffer(), described);
        } else {
            ItemText(output.buffer(), output.terminalWidth())
                .write(described, session.entryName(origin.entry));
        }
    }
    if (output.flush() || output.isClosed()) {
        return ExitCode::Done;
    }
    messages.outputFailure("standard output", output.errorNumber());
    return ExitCode::OutputFailed;
}

} // namespace

ExitCode runShow(const ShowOptions& options, Output& output, Messages& messages) {
    Interrupt::endAtOnce();
    ArchiveInput input(options.archive);
    olmhost::Session session;
    if (const ExitCode code = input.open(session, messages); code != ExitCode::Done) {
        return code;
    }
    return Show(options, session, output, messages).run();
}

} // namespace olmkit
