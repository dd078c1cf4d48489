#include "filter/frame/OLMNodeFactory.h"

#include "filter/frame/OLMXmlDumper.h"
#include "filter/listing/OLMKindFields.h"
#include "filter/writers/OLMMsgCalWriter.h"
#include "filter/writers/OLMMsgContactGrpWriter.h"
#include "filter/writers/OLMMsgContactWriter.h"
#include "filter/writers/OLMMsgMailWriter.h"
#include "filter/writers/OLMMsgNoteWriter.h"
#include "filter/writers/OLMMsgTaskWriter.h"
#include "filter/xml/OLMRootTags.h"

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
    case AppointmentItems:
        return new OLMMsgCalWriter(request);
    case ContactItems:
        return new OLMMsgContactWriter(request);
    case EmailItems:
        return new OLMMsgMailWriter(request, archive);
    case NoteItems:
        return new OLMMsgNoteWriter(request);
    case TaskItems:
        return new OLMMsgTaskWriter(request);
    case GroupItems:
        return new OLMMsgContactGrpWriter(request);
    default:
        return new OLMXmlDumper(request);
    }
}

void OLMNodeFactory::freeNodeWriter(OLMNodeWriter** writer) {
    delete *writer;
    *writer = nullptr;
}
