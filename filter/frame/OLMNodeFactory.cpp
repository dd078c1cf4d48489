#include "filter/frame/OLMNodeFactory.h"

#include "filter/core/Exception.h"
#include "filter/frame/OLMXmlDumper.h"
#include "filter/listing/OLMCalFields.h"
#include "filter/listing/OLMContactFields.h"
#include "filter/listing/OLMContactGrpFields.h"
#include "filter/listing/OLMEmailFields.h"
#include "filter/listing/OLMNoteFields.h"
#include "filter/listing/OLMTaskFields.h"
#include "filter/writers/OLMMsgContactGrpWriter.h"
#include "filter/writers/OLMMsgContactWriter.h"
#include "filter/writers/OLMMsgMailWriter.h"
#include "filter/writers/OLMMsgNoteWriter.h"
#include "filter/xml/OLMRootTags.h"

namespace {

constexpr unsigned int errUnknownItem = 15;

} // namespace

OLMNodeInt* OLMNodeFactory::newOLMFieldsNode(unsigned int type, OLMXMLParser& parser, void* proc) {
    switch (type) {
    case AppointmentItems:
        return new OLMCalFields(parser, proc);
    case ContactItems:
        return new OLMContactFields(parser, proc);
    case EmailItems:
        return new OLMEmailFields(parser, proc);
    case NoteItems:
        return new OLMNoteFields(parser, proc);
    case TaskItems:
        return new OLMTaskFields(parser, proc);
    case GroupItems:
        return new OLMContactGrpFields(parser, proc);
    default:
        return nullptr;
    }
}

void OLMNodeFactory::freeOLMNode(OLMNodeInt** node) {
    delete *node;
    *node = nullptr;
}

OLMNodeWriter* OLMNodeFactory::newOLMNodeWriter(unsigned int type, void* archive,
                                                tagSODOSPECIALARC* request) {
    switch (type) {
    case ContactItems:
        return new OLMMsgContactWriter(request);
    case EmailItems:
        return new OLMMsgMailWriter(request, archive);
    case NoteItems:
        return new OLMMsgNoteWriter(request);
    case GroupItems:
        return new OLMMsgContactGrpWriter(request);
    case AppointmentItems:
    case TaskItems:
        // Their writers are still to come. The request fails: it must not end as an empty message.
        throw qor::Exception(errUnknownItem, nullptr, nullptr, nullptr, 0);
    default:
        return new OLMXmlDumper(request);
    }
}

void OLMNodeFactory::freeNodeWriter(OLMNodeWriter** writer) {
    delete *writer;
    *writer = nullptr;
}
