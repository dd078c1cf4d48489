#ifndef OLMKIT_FILTER_STORAGE_OLMMSGEMAILATTACHMENT_H
#define OLMKIT_FILTER_STORAGE_OLMMSGEMAILATTACHMENT_H

#include "filter/storage/OLMMsgSubStg.h"

// The storage of one attachment of a mail ([MS-OXMSG] 2.2.2).
class OLMMsgEmailAttachment : public OLMMsgSubStg {
public:
    // Makes the storage of attachment `number`, from 0, in `parent`, the root storage of the
    // message (a HostStream, borrowed). Throws qor::Exception when the storage can't be made or the
    // header of its property stream can't be written.
    OLMMsgEmailAttachment(void* parent, unsigned int number);

    ~OLMMsgEmailAttachment() override = default;
};

#endif
