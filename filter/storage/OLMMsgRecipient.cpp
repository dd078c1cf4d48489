#include "filter/storage/OLMMsgRecipient.h"

OLMMsgRecipient::OLMMsgRecipient(void* parent, unsigned int number) {
    open(parent, "__recip_version1.0_#", number);
}
