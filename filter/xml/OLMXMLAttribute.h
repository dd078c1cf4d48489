#ifndef OLMKIT_FILTER_XML_OLMXMLATTRIBUTE_H
#define OLMKIT_FILTER_XML_OLMXMLATTRIBUTE_H

#include "filter/core/WString.h"

// One attribute of a tag: its qualified name and its text. Either may be empty.
struct OLMXMLAttribute {
    qor::WString name;
    qor::WString value;
};

#endif
