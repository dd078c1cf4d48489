#include "host/session/CensusTaker.h"

#include <algorithm>
#include <string_view>

#include "host/archive/ArchiveContents.h"
#include "host/markup/MarkupParser.h"

namespace olmhost {

namespace {

std::string counted(std::uint64_t count, std::string_view one, std::string_view more) {
    return std::to_string(count) + " " + std::string(count == 1 ? one : more);
}

bool popToEnd(EventQueue& queue) {
    bool isEnd = false;
    for (; !queue.empty(); queue.pop()) {
        isEnd = isEnd || queue.front().kind == EventKind::End;
    }
    return isEnd;
}

} // namespace

void CensusTaker::endEntry(std::uint64_t entry, std::uint64_t rows) {
    if (file.contents().isDocument(entry)) {
        endDocument(entry, rows);
    } else {
        // It may be a document whose name in the directory is damaged.
        file.checkHeader(entry);
    }
    taken.entries = entry + 1;
    counter.forget();
    faultsBefore = file.faults().size();
}

void CensusTaker::endDocument(std::uint64_t entry, std::uint64_t rows) {
    const bool wasOpened = counter.hasBegun();
    if (isUnfinished()) {
        read(entry);
    }
    // Also where the root element is unknown: damage may have made it so.
    file.checkRest(entry);
    const KindCensus& found = counter.counts();
    if (counter.kind()) {
        KindCensus& kind = taken.kinds[static_cast<std::size_t>(*counter.kind())];
        ++kind.documents;
        kind.items += found.items;
        kind.attachments += found.attachments;
        kind.unnamedAttachments += found.unnamedAttachments;
    }
    taken.hasKnownRoot = taken.hasKnownRoot || counter.kind() || counter.isCategories();
    if (found.items == 0 || found.items != rows) {
        note(entry, rows, wasOpened);
    }
}

// Returns whether the document was left before its end. One that could not be opened is not
// retried.
bool CensusTaker::isUnfinished() const {
    return counter.hasBegun() ? !counter.isDone() : file.faults().size() == faultsBefore;
}

void CensusTaker::read(std::uint64_t entry) {
    Handle* const document = file.openEntry(entry);
    if (document == nullptr) {
        return;
    }
    MarkupParser parser;
    parser.open(*document);
    parser.skipUntilFewerThan(1);
    while (!counter.isDone()) {
        parser.fill();
        if (popToEnd(parser.queue)) {
            break;
        }
    }
    if (parser.fault() != nullptr) {
        document->reportFault(parser.fault()->kind, parser.fault()->text);
    }
    parser.close();
    document->end();
}

void CensusTaker::note(std::uint64_t entry, std::uint64_t rows, bool wasOpened) {
    DocumentNote note = {entry, DocumentFinding::NoItems, counter.counts().items, rows, ""};
    if (note.items != rows) {
        describeMismatch(note, wasOpened);
    } else if (counter.isCategories()) {
        note.finding = DocumentFinding::Categories;
        note.text = "it has categories and no items";
    } else if (counter.hasRoot() && !counter.kind()) {
        note.finding = DocumentFinding::OtherRoot;
        note.text = "its root element \"" + counter.otherRoot() + "\" is not of a known kind";
    } else if (file.contents().info(entry).size == 0) {
        note.finding = DocumentFinding::Empty;
        note.text = "it is empty";
    } else if (const EntryFault* fault = faultOf(entry); fault != nullptr) {
        note.finding = DocumentFinding::Unreadable;
        note.text = fault->text;
    } else {
        note.text = "there is no " + std::string(nameOf(*counter.kind())) + " in it";
        addStrangers(note.text);
    }
    taken.notes.push_back(std::move(note));
}

void CensusTaker::describeMismatch(DocumentNote& note, bool wasOpened) const {
    note.finding = wasOpened ? DocumentFinding::OtherNumber : DocumentFinding::NotListed;
    note.text = "it has " + counted(note.items, "item", "items") + ", of which ";
    if (wasOpened) {
        note.text += counted(note.rows, "is", "are") + " listed";
        addStrangers(note.text);
    } else {
        note.text +=
            "none is listed: an entry's name must have \".xml\" once, at its end and not alone";
    }
}

void CensusTaker::addStrangers(std::string& text) const {
    if (const std::uint64_t count = counter.strangers(); count > 0) {
        text += "; " + counted(count, "other element is", "other elements are") +
                " where items are expected";
    }
}

// Returns the last fault of the entry; null when there is none.
const EntryFault* CensusTaker::faultOf(std::uint64_t entry) const {
    const std::vector<EntryFault>& faults = file.faults();
    const auto found = std::find_if(faults.rbegin(), faults.rend(), [=](const EntryFault& fault) {
        return fault.entryIndex == entry;
    });
    return found == faults.rend() ? nullptr : &*found;
}

} // namespace olmhost
