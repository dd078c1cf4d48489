#include "filter/xml/OLMXMLTag.h"

#include <algorithm>

namespace {

bool equals(const qor::WString& text, std::string_view ascii) {
    return static_cast<std::size_t>(text.length()) == ascii.size() &&
           std::equal(ascii.begin(), ascii.end(), text.value());
}

} // namespace

const OLMXMLAttribute* OLMXMLTag::findAttribute(std::string_view name) const {
    for (int index = 0; index < attributes.size(); ++index) {
        const OLMXMLAttribute* attribute = attributes.get(index);
        if (equals(attribute->name, name)) {
            return attribute;
        }
    }
    return nullptr;
}

void OLMXMLTag::clearAttributes() {
    for (int index = 0; index < attributes.size(); ++index) {
        delete attributes.get(index);
    }
    attributes.clear();
}
