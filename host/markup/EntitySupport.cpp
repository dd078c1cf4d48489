#include "host/markup/EntitySupport.h"

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>

#include <expat.h>

namespace olmhost {

namespace {

constexpr std::string_view probe = "<!DOCTYPE a [<!ENTITY in '1<b/>2'><!ENTITY mid '3&in;4'>"
                                   "<!ENTITY out '5&mid;6'>]><a>7&out;8</a>";
constexpr std::string_view probeText = "75312468";

struct ProbeDelete {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ProbeParser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ProbeDelete>;

struct Probe {
    ProbeParser parser;
    std::string text;
};

void suspendInside(void* user, const XML_Char* name, const XML_Char**) {
    if (std::string_view(name) == "b") {
        XML_StopParser(static_cast<Probe*>(user)->parser.get(), XML_TRUE);
    }
}

void addText(void* user, const XML_Char* bytes, int size) {
    std::string& text = static_cast<Probe*>(user)->text;
    // It has room for what is expected, so nothing is thrown through expat.
    if (text.size() + static_cast<std::size_t>(size) <= text.capacity()) {
        text.append(bytes, static_cast<std::size_t>(size));
    }
}

bool resumesInsideEntities() {
    Probe state{ProbeParser(XML_ParserCreate(nullptr)), {}};
    if (!state.parser) {
        throw std::bad_alloc();
    }
    state.text.reserve(2 * probeText.size());
    XML_Parser const parser = state.parser.get();
    XML_SetUserData(parser, &state);
    XML_SetStartElementHandler(parser, suspendInside);
    XML_SetCharacterDataHandler(parser, addText);
    XML_Status status = XML_Parse(parser, probe.data(), static_cast<int>(probe.size()), 1);
    if (status == XML_STATUS_SUSPENDED) {
        status = XML_ResumeParser(parser);
    }
    if (status == XML_STATUS_ERROR && XML_GetErrorCode(parser) == XML_ERROR_NO_MEMORY) {
        throw std::bad_alloc();
    }
    return status == XML_STATUS_OK && state.text == probeText;
}

} // namespace

std::optional<std::size_t> EntitySupport::testLimit;

bool EntitySupport::isSound() {
    if (testLimit) {
        return false;
    }
    static const bool isSoundHere = resumesInsideEntities();
    return isSoundHere;
}

std::size_t EntitySupport::addedLimit() {
    return testLimit.value_or(maxAdded);
}

EntitySupport::WithoutFix::WithoutFix(std::size_t addedLimit) {
    testLimit = addedLimit;
}

EntitySupport::WithoutFix::~WithoutFix() {
    testLimit.reset();
}

} // namespace olmhost
