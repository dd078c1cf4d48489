#ifndef OLMKIT_TESTS_FAKEHOST_PARTS_H
#define OLMKIT_TESTS_FAKEHOST_PARTS_H

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/fakehost/FakeHost.h"

// What the parts of the host share; not for tests.
namespace fakehost {

enum class HandleKind { RawStream, Archive, Bytes, Output, Root, Storage, Stream };

// The nodes of one root storage, while they are written.
class MessageStore {
public:
    static constexpr int rootNode = -1;

    // Makes a node and returns its number. It takes the place of one of the same name in the same
    // storage, which disappears with everything below it.
    int make(int parent, const std::u16string& name, bool isStorage);
    void write(int node, const void* data, size_t size);
    [[nodiscard]] std::string path(int node) const;
    [[nodiscard]] StoredMessage snapshot() const;

    Bytes classId;
    bool isMade = false;
    bool isClosed = false;

private:
    struct Node {
        int parent = rootNode;
        std::string name;
        bool isStorage = false;
        bool isReplaced = false;
        Bytes bytes;
    };

    void replace(int node);

    std::vector<Node> nodes;
    std::vector<int> order; // numbers of nodes in the order of the storage
};

// An entry of the archive.
struct Entry {
    std::string name;
    Bytes bytes;
    std::vector<ReaderEvent> events;
    std::optional<int32_t> openStatus; // its open fails
};

// A handle; the module sees only `record`, and only its first member unless it is an archive.
struct Handle {
    ArchiveDirectory record;
    FakeHost* host;
    HandleKind kind;
    bool isOpen;
    std::string title;                      // what it is in call texts
    const Bytes* bytes;                     // Bytes: what it reads
    const std::vector<ReaderEvent>* events; // Bytes: what a reader on it sees
    size_t position;                        // Bytes
    int entryIndex;                         // Bytes: -1 when it is not an entry of the archive
    MessageStore* store;                    // Output, Root, Storage, Stream
    int node;                               // Storage, Stream: its number in `store`
    Bytes* sink;                            // Output: takes what is written
};
static_assert(std::is_standard_layout_v<Handle>);

struct Block {
    std::unique_ptr<uint8_t[]> bytes;
    uint64_t size = 0;
    int locks = 0;
    bool isFree = false;
};

// A reader between UTXMLInit and UTXMLDeInit.
struct Reader {
    const std::vector<ReaderEvent>* events = nullptr;
    int entryIndex = -1;
    size_t position = 0;         // the event that comes next
    size_t afterTag = 0;         // the event after the tag read last
    size_t textPosition = 0;     // units read of the text at `position`
    size_t readNumber = 0;       // scripted reads answered of the text at `position`
    bool isAfterOpening = false; // the tag read last was an opening tag
    bool isPendingReported = false;
    bool isBroken = false;
    int failedReads = 0;          // in a row
    std::vector<size_t> openTags; // events of the elements that are open
    std::map<std::string, uint64_t> ids;
    const std::vector<ScriptedAttribute>* attributes = nullptr;
    size_t attributeNumber = 0;
    // Exactly the units handed out, so that a read past them or after the next call is caught.
    std::unique_ptr<uint16_t[]> nameUnits;
    std::unique_ptr<uint16_t[]> valueUnits;
};

struct Plan {
    bool isSet = false;
    int remaining = 0;
    int32_t status = 0;
};

struct FakeHost::Parts {
    std::vector<std::unique_ptr<Entry>> entries;
    std::vector<ArchiveEntry> rows;
    std::string namePool;
    std::optional<int32_t> archiveStatus;
    uint16_t archiveFlags = 0;
    ArchiveOpenRequest archiveRequest{};
    std::vector<MemberOpenRequest> memberRequests;
    std::vector<std::unique_ptr<Bytes>> loneBytes;
    std::vector<std::unique_ptr<Handle>> handles;
    Handle* rawStream = nullptr;

    std::map<uint64_t, Block> blocks;

    std::vector<std::unique_ptr<Reader>> readers; // closed ones are null
    std::vector<FakeHost::TagMap> tagMaps;
    int16_t endOfTextStatus = 1;

    std::vector<std::unique_ptr<MessageStore>> stores;
    std::vector<std::unique_ptr<Bytes>> sinks;

    std::vector<HostCall> calls;
    std::vector<std::string> misuses;
    Plan plans[static_cast<size_t>(CallKind::Count)];
    Plan anyPlan;
    Plan shortPlan;
    uint32_t shortCount = 0;
    int callCount = 0;
    bool hasFailed = false;

    Handle* newHandle(FakeHost& host, HandleKind kind, const std::string& title);
};

// Returns the handle of a stream. One that is closed, or not the host's, is a misuse: null.
Handle* handleOf(HostStream* stream, const char* operation);

// Fills in the operations that every handle has.
void setOperations(HostStream& stream);

} // namespace fakehost

#endif
