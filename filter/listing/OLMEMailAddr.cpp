#include "filter/listing/OLMEMailAddr.h"

#include "filter/state/PROC.h"
#include "filter/xml/WStringUnits.h"

void OLMEMailAddr::setAddress(const uint16_t* text) {
    setUnits(address, text, countUnits(text));
}

void OLMEMailAddr::setName(const uint16_t* text) {
    setUnits(name, text, countUnits(text));
}

void OLMEMailAddr::setType(int newType) {
    type = newType;
}

const uint16_t* OLMEMailAddr::getAddress() const {
    return address.value();
}

int64_t OLMEMailAddr::getAddressLen() const {
    return address.length();
}

const uint16_t* OLMEMailAddr::getName() const {
    return name.value();
}

int64_t OLMEMailAddr::getNameLen() const {
    return name.length();
}

int OLMEMailAddr::getType() const {
    return type;
}

void OLMEMailAddr::clearAddress() {
    address.setLength(0);
}

void OLMEMailAddr::clearName() {
    name.setLength(0);
}

void OLMEMailAddr::clear() {
    clearAddress();
    clearName();
}

int OLMEMailAddr::outputToChunker(void* proc) {
    if (address.length() == 0) {
        return 0;
    }
    return static_cast<const PROC*>(proc)->call<SoRtnPutTextId>(
        address.value(), static_cast<uint16_t>(address.length()), CharsetUtf16);
}

int OLMEMailAddr::outputToFile(void* /*file*/) {
    return 0;
}
