// VwDoSpecial: finds one item again and runs its writer.

#include <memory>

#include "filter/boundary/Memory.h"
#include "filter/frame/OLMNodeFactory.h"
#include "filter/state/PROC.h"
#include "filter/xml/OLMXMLParser.h"

namespace {

constexpr int16_t progressDone = 100;

struct Progress {
    // Reports a value. Returns true when the host cancels.
    bool report(int16_t value) const { return callback != nullptr && callback(data, value) != 0; }

    ProgressCallback callback; // may be null
    void* data;
};

// The state of one request. The writer is not part of it: after an exception it stays allocated.
struct Extraction {
    const PROC& proc;
    SODOSPECIALARC& request;
    OLMXMLTag& rootTag;
    std::unique_ptr<OLMXMLParser> parser;

    void openDocument(uint64_t entryIndex) {
        parser = std::make_unique<OLMXMLParser>(proc.archive, entryIndex);
        // The result is not needed: without a root tag the id is 0.
        parser->nextTag(rootTag);
    }
};

int32_t findByIndex(Extraction& work) {
    const auto index = static_cast<uint32_t>(work.request.itemIndex);
    if (index >= static_cast<uint32_t>(work.proc.items->size())) {
        return VwSpecialFailed;
    }
    const OLMNodeId* item = work.proc.items->get(work.request.itemIndex);
    work.openDocument(item->entryIndex);
    work.parser->setParserState(&item->state);
    return VwSpecialDone;
}

// Skips `count` elements, whatever they are. Returns false when the reader refuses. A count past
// the last item is not a failure: the reader is left before the closing tag of the root, and the
// message will be empty.
bool skipItems(OLMXMLParser& parser, uint32_t count) {
    OLMXMLTag tag;
    for (; count != 0; --count) {
        tagUTXMLSaveData before{};
        parser.getParserState(&before);
        parser.nextTag(tag);
        if (tag.isClosing()) {
            parser.setParserState(&before);
            return true;
        }
        if (parser.skipTag(tag) == 0) {
            return false;
        }
    }
    return true;
}

int32_t findByLocation(Extraction& work) {
    const ItemLocator& locator = work.request.locator;
    if (locator.itemNumber == 0) {
        return VwSpecialNoItem;
    }
    work.openDocument(locator.entryIndex);
    return skipItems(*work.parser, locator.itemNumber - 1) ? VwSpecialDone : VwSpecialNoItem;
}

int32_t findItem(Extraction& work) {
    const bool isByLocation = (work.request.flags & SpecialByLocation) != 0;
    return isByLocation ? findByLocation(work) : findByIndex(work);
}

// The value 100 completes the item, even when the host answers it with a cancel.
void writeItem(Extraction& work, const Progress& progress) {
    OLMNodeWriter* writer =
        OLMNodeFactory::newOLMNodeWriter(work.rootTag.id(), work.proc.archive, &work.request);
    if (writer == nullptr) {
        return;
    }
    writer->initilizeWriter(*work.parser);

    int16_t value = 0;
    bool isCancelled = false;
    while (value != progressDone && !isCancelled) {
        value = writer->writeNode(*work.parser);
        isCancelled = progress.report(value);
    }
    if (value == progressDone) {
        writer->finalizeNode(*work.parser);
    }
    OLMNodeFactory::freeNodeWriter(&writer);
}

// Returns the result of the request; no exception leaves this function. The status of a failure is
// stored before the parser ends.
int32_t extractItem(const PROC& proc, SODOSPECIALARC& request, OLMXMLTag& rootTag,
                    const Progress& progress, uint16_t& status) {
    Extraction work{proc, request, rootTag, nullptr};
    int32_t result = VwSpecialFailed;
    try {
        result = findItem(work);
        if (result == VwSpecialDone) {
            writeItem(work, progress);
        }
    } catch (...) {
        result = VwSpecialFailed;
    }
    if (result != VwSpecialDone) {
        status = VwSpecialStatusFailed;
    }
    return result;
}

} // namespace

int32_t VwDoSpecial(uint64_t /*ignored0*/, uint64_t request, ProgressCallback callback,
                    void* callbackData, uint16_t* status, uint64_t /*ignored1*/, PROC* proc) {
    OLMXMLTag rootTag;
    auto* record = static_cast<SODOSPECIALARC*>(SYSNativeLock(request));
    if (record == nullptr) {
        // The host must not return from this routine; for one that does the request fails.
        proc->call<SoRtnBailId>(BailFailure);
        *status = VwSpecialStatusFailed;
        return VwSpecialFailed;
    }
    *status = 0;
    const int32_t result = extractItem(*proc, *record, rootTag, {callback, callbackData}, *status);
    SYSNativeUnlock(request);
    return result;
}
