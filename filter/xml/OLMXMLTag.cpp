#include "filter/xml/OLMXMLTag.h"

#include <algorithm>

namespace {

bool equals(const qor::WString& text, std::string_view ascii) {
    return static_cast<std::size_t>(text.length()) == ascii.size() &&
           std::equal(ascii.begin(), ascii.end(), text.value());
}

} // namespace

const OLMXMLAttribute* OLMXMLTag::findAttribute(std::string_view name) const {
    for (const OLMXMLAttribute* attribute : attributes) {
        if (equals(attribute->name, name)) {
            return attribute;
        }
    }
    return nullptr;
}

void OLMXMLTag::clearAttributes() {
    for (const OLMXMLAttribute* attribute : attributes) {
        delete attribute;
    }
    attributes.clear();
}
