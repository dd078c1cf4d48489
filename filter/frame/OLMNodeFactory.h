#ifndef OLMKIT_FILTER_FRAME_OLMNODEFACTORY_H
#define OLMKIT_FILTER_FRAME_OLMNODEFACTORY_H

#include "filter/boundary/Request.h"
#include "filter/listing/OLMNodeInt.h"
#include "filter/storage/OLMNodeWriter.h"

class OLMXMLParser;

// Makes what a document's type, the id of its root tag, calls for.
class OLMNodeFactory {
public:
    // The field node for the documents' items, or null for a type that is not in OLMItemType.
    // `parser` gets the node's tag table; `proc` is a PROC, borrowed. Throws qor::Exception when
    // the reader refuses the table.
    static OLMNodeInt* newOLMFieldsNode(unsigned int type, OLMXMLParser& parser, void* proc);

    // Deletes the node, if there is one, and clears the pointer.
    static void freeOLMNode(OLMNodeInt** node);

    // The writer for one item; an OLMXmlDumper for a type that is not in OLMItemType. `archive`
    // (an ArchiveDirectory) and `request` are borrowed for the writer's life.
    static OLMNodeWriter* newOLMNodeWriter(unsigned int type, void* archive,
                                           tagSODOSPECIALARC* request);

    // Deletes the writer, if there is one, and clears the pointer.
    static void freeNodeWriter(OLMNodeWriter** writer);
};

#endif
