#ifndef OLMKIT_FILTER_STORAGE_OLMMSGRECIPIENT_H
#define OLMKIT_FILTER_STORAGE_OLMMSGRECIPIENT_H

#include "filter/storage/OLMMsgSubStg.h"

// The storage of one recipient of a message ([MS-OXMSG] 2.2.1).
class OLMMsgRecipient : public OLMMsgSubStg {
public:
    // Makes the storage of recipient `number`, from 0, in `parent`, the root storage of the message
    // (a HostStream, borrowed). Throws qor::Exception when the storage can't be made or the header
    // of its property stream can't be written.
    OLMMsgRecipient(void* parent, unsigned int number);

    ~OLMMsgRecipient() override = default;
};

#endif
