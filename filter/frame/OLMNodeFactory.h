#ifndef OLMKIT_FILTER_FRAME_OLMNODEFACTORY_H
#define OLMKIT_FILTER_FRAME_OLMNODEFACTORY_H

#include "filter/boundary/Request.h"
#include "filter/listing/OLMNodeInt.h"
#include "filter/storage/OLMNodeWriter.h"

class OLMXMLParser;

// Makes the nodes and writers for a type of document, which is the id of its root tag.
class OLMNodeFactory {
public:
    // Returns a field node for an item, to be freed with freeOLMNode(), or null for a type that is
    // not an OLMItemType. Adds the node's tag table to `parser`. `proc` is a PROC, borrowed for the
    // node's life. Throws qor::Exception when the reader refuses the table.
    static OLMNodeInt* newOLMFieldsNode(unsigned int type, OLMXMLParser& parser, void* proc);

    // Deletes the node unless it is null, and sets the pointer to null.
    static void freeOLMNode(OLMNodeInt** node);

    // Returns a writer for one item, to be freed with freeNodeWriter(): an OLMXmlDumper for a type
    // that is not an OLMItemType. `archive` (an ArchiveDirectory) and `request` are borrowed for
    // the writer's life.
    static OLMNodeWriter* newOLMNodeWriter(unsigned int type, void* archive,
                                           tagSODOSPECIALARC* request);

    // Deletes the writer unless it is null, and sets the pointer to null.
    static void freeNodeWriter(OLMNodeWriter** writer);
};

#endif
