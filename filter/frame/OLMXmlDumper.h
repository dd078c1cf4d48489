#ifndef OLMKIT_FILTER_FRAME_OLMXMLDUMPER_H
#define OLMKIT_FILTER_FRAME_OLMXMLDUMPER_H

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Request.h"
#include "filter/storage/OLMNodeWriter.h"

// Copies a whole entry, for documents of a type that no writer knows. It never reports the item's
// end: every writeNode() copies the entry once more, until the progress callback cancels.
class OLMXmlDumper : public OLMNodeWriter {
public:
    // The request and its output are borrowed.
    explicit OLMXmlDumper(SODOSPECIALARC* request);

    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // 0 when the entry was copied to its end, -15 when the output took fewer bytes than it got
    // without telling a failure. A failure that it tells is passed over.
    int16_t writeNode(OLMXMLParser& parser) override;

    unsigned int finalizeNode(OLMXMLParser& parser) override;

private:
    [[maybe_unused]] SODOSPECIALARC* request; // not owned
    HostStream* output;                       // not owned
};

#endif
