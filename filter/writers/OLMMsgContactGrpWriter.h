#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPWRITER_H

#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"
#include "filter/writers/OneOffEntryIdData.h"

// Writes one contact group as a message of class IPM.DistList ([MS-OXOCNTC]).
//
// Each member becomes a one-off entry identifier ([MS-OXCDATA] 2.2.5.1), which describes a
// recipient without an address book. Two multiple-valued named properties contain the same
// identifiers, which are written as the members are read, so only one member is in memory.
class OLMMsgContactGrpWriter : public OLMMsgWriter {
public:
    using OLMMsgWriter::OLMMsgWriter;

    ~OLMMsgContactGrpWriter() override = default;

    // Returns 0. Throws qor::Exception ErrTagTable when the reader refuses the table, and what the
    // base class throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Handles the category list, the display name and the member list.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // Adds the text of the element as the subject and as PidLidDistributionListName.
    void handleDistListName(OLMXMLParser& parser);

    // Writes a member for every opening tag up to the end of the member list. A property whose
    // stream of sizes can't be made is left out when there is no member. Throws qor::Exception
    // ErrShortWrite; both streams of sizes then stay open until the host ends the output.
    void handleGroupList(OLMXMLParser& parser);

    // Writes the member as a one-off entry identifier. Returns its size in bytes, without texts
    // whose write failed. Throws qor::Exception ErrShortWrite.
    static unsigned int writeOneOffEntryId(HostStream* stream, const OneOffEntryIdData& data);

private:
    // One of the two properties while its values are written.
    struct EntryIdList {
        unsigned int tag;
        HostStream* sizes; // 8 bytes for each value; null when it can't be made
    };

    void writeMember(const EntryIdList& list, unsigned int index, const OneOffEntryIdData& data);
};

#endif
