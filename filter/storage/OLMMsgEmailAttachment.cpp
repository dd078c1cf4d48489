#include "filter/storage/OLMMsgEmailAttachment.h"

OLMMsgEmailAttachment::OLMMsgEmailAttachment(void* parent, unsigned int number) {
    open(parent, "__attach_version1.0_#", number);
}
