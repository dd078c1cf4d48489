#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPWRITER_H

#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"
#include "filter/writers/OneOffEntryIdData.h"

// Turns one contact group into a message of class IPM.DistList.
//
// Each member becomes a one-off entry identifier, which names a recipient without any address
// book. Two multi-valued named properties hold the same identifiers. Their values are written as
// the members are read, so a list of any length takes the memory of one member here.
class OLMMsgContactGrpWriter : public OLMMsgWriter {
public:
    using OLMMsgWriter::OLMMsgWriter;

    ~OLMMsgContactGrpWriter() override = default;

    // 0. Throws qor::Exception: ErrTagTable for a refused table, and what the base throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Takes the category list, the display name and the member list.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // Adds the element's text as the subject and as the named property of the group's name, which
    // is left out when no row has its key.
    void handleDistListName(OLMXMLParser& parser);

    // Writes a member for every opening tag up to the end of the member list. A property whose
    // stream of sizes can't be made is left out when there is no member. Throws qor::Exception
    // ErrShortWrite; both streams of sizes then stay open until the host ends the output.
    void handleGroupList(OLMXMLParser& parser);

    // Writes the member as a one-off entry identifier. Its size in bytes, less those of a text
    // whose write reported a failure. Throws qor::Exception ErrShortWrite.
    static unsigned int writeOneOffEntryId(HostStream* stream, const OneOffEntryIdData& data);

private:
    // One of the two properties, while its values are written.
    struct EntryIdList {
        unsigned int tag;
        HostStream* sizes; // 8 bytes for each value; null when it could not be made
    };

    void writeMember(const EntryIdList& list, unsigned int index, const OneOffEntryIdData& data);
};

#endif
