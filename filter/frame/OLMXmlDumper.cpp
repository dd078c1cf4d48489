#include "filter/frame/OLMXmlDumper.h"

#include <array>
#include <cstdint>

#include "filter/storage/WriterErrors.h"
#include "filter/xml/OLMXMLParser.h"

OLMXmlDumper::OLMXmlDumper(SODOSPECIALARC* request) : request(request), output(request->output) {}

unsigned int OLMXmlDumper::initilizeWriter(OLMXMLParser& /*parser*/) {
    return 0;
}

int16_t OLMXmlDumper::writeNode(OLMXMLParser& parser) {
    HostStream* input = parser.stream;
    input->seek(input, 0, 0);

    std::array<uint8_t, 1024> buffer;
    uint32_t bytesRead = 0;
    while (input->read(input, buffer.data(), buffer.size(), &bytesRead) == 0) {
        uint32_t bytesWritten = 0;
        const int32_t status = output->write(output, buffer.data(), bytesRead, &bytesWritten);
        if (status == 0 && bytesWritten != bytesRead) {
            return static_cast<int16_t>(ErrShortWrite);
        }
    }
    return 0;
}

unsigned int OLMXmlDumper::finalizeNode(OLMXMLParser& /*parser*/) {
    return 0;
}
