#include "tests/unit/writers/WriterFrame.h"

#include "filter/storage/MsgPropPair.h"

using namespace fakehost;

WriterFrame::WriterFrame() {
    request.output = host.newOutput();
}

void WriterFrame::openDocument(const ItemDocument& item) {
    host.entry("Local/items.xml", item);
    for (const auto& [name, bytes] : entries) {
        host.entry(name, bytes);
    }
    archive = host.openArchive();
    parser.emplace(archive, 0);
    OLMXMLTag root;
    ASSERT_EQ(parser->nextTag(root), 1);
    makeWriter();
}

void WriterFrame::begin(const ItemDocument& item) {
    openDocument(item);
    ASSERT_EQ(anyWriter().initilizeWriter(*parser), 0u);
    host.forgetCalls();
    openBefore = host.openHandles();
}

void WriterFrame::enterElement() {
    OLMXMLTag tag;
    do {
        ASSERT_EQ(parser->nextTag(tag), 1);
    } while (tag.isClosing());
}

std::vector<int> WriterFrame::run() {
    std::vector<int> progress;
    do {
        progress.push_back(anyWriter().writeNode(*parser));
    } while (progress.back() != 100 && progress.size() < 1000);
    return progress;
}

std::vector<PropertyEntry> WriterFrame::added() {
    const auto& properties = anyWriter().*(&WriterInside::properties);
    std::vector<PropertyEntry> entries;
    for (int index = static_cast<int>(requiredCount); index < properties.size(); ++index) {
        const MsgPropPair* pair = properties.get(index);
        entries.push_back({pair->tag, pair->flags, pair->value});
    }
    return entries;
}
