#ifndef OLMKIT_FILTER_FRAME_OLMXMLDUMPER_H
#define OLMKIT_FILTER_FRAME_OLMXMLDUMPER_H

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Request.h"
#include "filter/storage/OLMNodeWriter.h"

// Copies a whole entry, for documents whose type has no writer. It never reports the end of the
// item: every writeNode() copies the entry once more, until the progress callback cancels.
class OLMXmlDumper : public OLMNodeWriter {
public:
    // The request and its output are borrowed.
    explicit OLMXmlDumper(SODOSPECIALARC* request);

    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Returns 0 when the entry was copied to its end, and ErrShortWrite (-15) when the output took
    // fewer bytes without a status. A status of the output is ignored.
    int16_t writeNode(OLMXMLParser& parser) override;

    unsigned int finalizeNode(OLMXMLParser& parser) override;

private:
    [[maybe_unused]] SODOSPECIALARC* request; // not owned
    HostStream* output;                       // not owned
};

#endif
