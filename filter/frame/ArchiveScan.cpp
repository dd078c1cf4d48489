// The entry points that open an archive, list its items and close it.

#include <memory>
#include <string_view>

#include "filter/boundary/Archive.h"
#include "filter/frame/OLMNodeFactory.h"
#include "filter/listing/OLMFieldsNode.h"
#include "filter/state/PROC.h"
#include "filter/xml/OLMXMLParser.h"

namespace {

constexpr std::string_view documentSuffix = ".xml";

constexpr uint32_t sectionType = 10; // the meaning is the host's

// The suffix must not occur earlier in the name, and must not be the whole name.
bool isDocument(const ArchiveDirectory& directory, uint64_t entryIndex) {
    const ArchiveEntry& entry = directory.entries[entryIndex];
    const std::string_view name(directory.namePool + entry.nameOffset, entry.nameLength);
    return name.size() > documentSuffix.size() &&
           name.find(documentSuffix) == name.size() - documentSuffix.size();
}

void rememberItem(PROC& proc, const tagUTXMLSaveData& state, uint32_t itemNumber) {
    auto item =
        std::make_unique<OLMNodeId>(OLMNodeId{state, proc.position.currentEntry, itemNumber});
    proc.items->add(item.get());
    static_cast<void>(item.release()); // now owned by the list
}

// Lists the items of the document at the current entry.
void scanDocument(PROC& proc) {
    OLMXMLTag rootTag;
    OLMXMLParser parser(proc.archive, proc.position.currentEntry);
    parser.nextTag(rootTag);

    for (uint32_t itemNumber = 1;; ++itemNumber) {
        // A plain pointer on purpose: an exception leaves the node allocated.
        OLMNodeInt* node = OLMNodeFactory::newOLMFieldsNode(rootTag.id(), parser, &proc);
        tagUTXMLSaveData state{};
        parser.getParserState(&state);
        if (node == nullptr) {
            return;
        }
        if (node->parseNode(parser) == 0) {
            OLMNodeFactory::freeOLMNode(&node);
            return;
        }
        node->translateNode(itemNumber);
        rememberItem(proc, state, itemNumber);
        OLMNodeFactory::freeOLMNode(&node);
    }
}

void scanEntry(PROC& proc) {
    try {
        if (isDocument(proc.directory(), proc.position.currentEntry)) {
            scanDocument(proc);
        }
    } catch (...) {
        // The rows listed so far stay, and the scan continues with the next entry.
        proc.call<SoRtnBailId>(BailFailure);
    }
}

bool isAtEnd(const PROC& proc) {
    return proc.position.currentEntry >= proc.directory().entryCount;
}

} // namespace

int32_t VwStreamOpen(HostStream* stream, uint16_t word, uint64_t /*ignored*/,
                     const FileInformation* fileInfo, PROC* proc) {
    proc->archive = stream;
    ArchiveOpenRequest request{};
    request.word = word;
    request.fileWord = fileInfo->word;
    if (stream->open(&proc->archive, OpenArchive, &request, OpenModeRead) != 0) {
        const bool isRefused = (request.flags & (ArchiveDamaged | ArchiveEncrypted)) != 0;
        return isRefused ? VwOpenRefused : VwOpenFailed;
    }
    proc->items = new qor::ArrayList<OLMNodeId*>;
    proc->scratch = new qor::WString;
    return VwOpenDone;
}

int32_t VwStreamSection(uint64_t /*ignored*/, PROC* proc) {
    proc->call<SoRtnSectionTypeId>(sectionType, 0, 0);
    proc->call<SoRtnSectionNameId>("Email Archive Section");
    proc->call<SoRtnCharsetId>(CharsetUtf16);
    OLMFieldsNode::defineOLMFields(proc);
    return 0;
}

int32_t VwStreamRead(uint64_t /*ignored*/, PROC* proc) {
    bool isPaused = false;
    while (!isPaused && !isAtEnd(*proc)) {
        scanEntry(*proc);
        ++proc->position.currentEntry;
        isPaused = proc->call<SoRtnBreakId>(BreakEntry, 0) != 0;
    }
    // The end of the archive is reported even when the host asked for a pause at the last entry.
    if (isAtEnd(*proc)) {
        proc->call<SoRtnBreakId>(BreakArchive, 0);
    }
    return 0;
}

void VwStreamClose(uint64_t /*ignored*/, PROC* proc) {
    if (proc->archive != nullptr) {
        proc->archive->close(proc->archive);
    }
    for (int index = 0; index < proc->items->size(); ++index) {
        delete proc->items->get(index);
    }
    delete proc->items;
    delete proc->scratch;
}
