#ifndef OLMKIT_FILTER_STORAGE_OLMMSGRECIPIENT_H
#define OLMKIT_FILTER_STORAGE_OLMMSGRECIPIENT_H

#include "filter/storage/OLMMsgSubStg.h"

// One recipient of a message.
class OLMMsgRecipient : public OLMMsgSubStg {
public:
    // `parent` is the message's root storage (a HostStream, borrowed), `number` counts from 0.
    // Throws qor::Exception when the storage or the head of its property stream can't be written.
    OLMMsgRecipient(void* parent, unsigned int number);

    ~OLMMsgRecipient() override = default;
};

#endif
