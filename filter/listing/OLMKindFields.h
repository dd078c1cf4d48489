#ifndef OLMKIT_FILTER_LISTING_OLMKINDFIELDS_H
#define OLMKIT_FILTER_LISTING_OLMKINDFIELDS_H

#include "filter/listing/OLMFieldsNode.h"

// The fields of each item kind. Every constructor adds the kind's tag table to `parser` and throws
// qor::Exception when the reader refuses it; `proc` is a PROC, borrowed for the node's life.

// A mail: sender, To and Cc lists, subject, sent, received and modification times.
class OLMEmailFields : public OLMFieldsNode {
public:
    OLMEmailFields(OLMXMLParser& parser, void* proc);

    void handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) override;
    void attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) override;
};

// An appointment: attendees, modification date, organizer and summary. The organizer is listed as
// the sender too.
class OLMCalFields : public OLMFieldsNode {
public:
    OLMCalFields(OLMXMLParser& parser, void* proc);

    void handleTag(const OLMXMLTag& tag, OLMXMLParser& parser) override;
    void attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address) override;
};

// A contact: business title, display name and modification date.
class OLMContactFields : public OLMFieldsNode {
public:
    OLMContactFields(OLMXMLParser& parser, void* proc);
};

// A task: name and modification date.
class OLMTaskFields : public OLMFieldsNode {
public:
    OLMTaskFields(OLMXMLParser& parser, void* proc);
};

// A note: title and modification date.
class OLMNoteFields : public OLMFieldsNode {
public:
    OLMNoteFields(OLMXMLParser& parser, void* proc);
};

// A contact group: display name and modification date. Its special values are those of a contact.
class OLMContactGrpFields : public OLMFieldsNode {
public:
    OLMContactGrpFields(OLMXMLParser& parser, void* proc);
};

#endif
