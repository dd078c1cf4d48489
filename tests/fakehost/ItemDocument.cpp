#include "tests/fakehost/ItemDocument.h"

#include <stdexcept>

namespace fakehost {

ItemDocument::ItemDocument(const std::string& root) {
    open(root);
}

ItemDocument& ItemDocument::open(const std::string& name) {
    script.push_back({ReaderEvent::Kind::Open, name, {}, {}, {}});
    openNames.push_back(name);
    return *this;
}

ItemDocument& ItemDocument::close() {
    if (openNames.empty()) {
        throw std::logic_error("ItemDocument: nothing to close");
    }
    script.push_back({ReaderEvent::Kind::Close, openNames.back(), {}, {}, {}});
    openNames.pop_back();
    return *this;
}

ItemDocument& ItemDocument::text(const Text& text) {
    if (text.units.empty()) {
        return *this;
    }
    lastOpening();
    if (script.back().kind != ReaderEvent::Kind::Open) {
        throw std::logic_error("ItemDocument: text must follow an opening tag");
    }
    script.push_back({ReaderEvent::Kind::Text, {}, {}, text.units, {}});
    return *this;
}

ItemDocument& ItemDocument::reads(std::vector<ScriptedRead> reads) {
    if (script.empty() || script.back().kind != ReaderEvent::Kind::Open || reads.empty()) {
        throw std::logic_error("ItemDocument: reads must follow an opening tag");
    }
    script.push_back({ReaderEvent::Kind::Text, {}, {}, {}, std::move(reads)});
    return *this;
}

ItemDocument& ItemDocument::element(const std::string& name) {
    return open(name).close();
}

ItemDocument& ItemDocument::element(const std::string& name, const Text& content) {
    return open(name).text(content).close();
}

ItemDocument& ItemDocument::attribute(const Text& name, const Text& value) {
    ScriptedAttribute attribute;
    attribute.name = name.units;
    attribute.value = value.units;
    lastOpening().attributes.push_back(std::move(attribute));
    return *this;
}

ItemDocument& ItemDocument::attribute(ScriptedAttribute attribute) {
    lastOpening().attributes.push_back(std::move(attribute));
    return *this;
}

ItemDocument& ItemDocument::breakOff() {
    script.push_back({});
    isBroken = true;
    return *this;
}

ItemDocument ItemDocument::cutAfter(size_t count) const {
    ItemDocument cut;
    cut.script = events();
    if (count < cut.script.size()) {
        cut.script.resize(count);
    }
    cut.breakOff();
    return cut;
}

size_t ItemDocument::eventCount() const {
    return events().size();
}

std::vector<ReaderEvent> ItemDocument::events() const {
    if (isBroken) {
        return script;
    }
    std::vector<ReaderEvent> all = script;
    for (auto name = openNames.rbegin(); name != openNames.rend(); ++name) {
        all.push_back({ReaderEvent::Kind::Close, *name, {}, {}, {}});
    }
    return all;
}

ReaderEvent& ItemDocument::lastOpening() {
    for (auto event = script.rbegin(); event != script.rend(); ++event) {
        if (event->kind == ReaderEvent::Kind::Open) {
            return *event;
        }
    }
    throw std::logic_error("ItemDocument: no opening tag yet");
}

ItemDocument document(const std::string& root) {
    return ItemDocument(root);
}

ItemDocument mail() {
    return document("emails").open("email");
}
ItemDocument appointment() {
    return document("appointments").open("appointment");
}
ItemDocument contact() {
    return document("contacts").open("contact");
}
ItemDocument task() {
    return document("tasks").open("task");
}
ItemDocument note() {
    return document("notes").open("note");
}
ItemDocument group() {
    return document("groups").open("group");
}

} // namespace fakehost
