#ifndef OLMKIT_FILTER_STORAGE_OLMMSGEMAILATTACHMENT_H
#define OLMKIT_FILTER_STORAGE_OLMMSGEMAILATTACHMENT_H

#include "filter/storage/OLMMsgSubStg.h"

// One attachment of a mail.
class OLMMsgEmailAttachment : public OLMMsgSubStg {
public:
    // `parent` is the message's root storage (a HostStream, borrowed), `number` counts from 0.
    // Throws qor::Exception when the storage or the head of its property stream can't be written.
    OLMMsgEmailAttachment(void* parent, unsigned int number);

    ~OLMMsgEmailAttachment() override = default;
};

#endif
