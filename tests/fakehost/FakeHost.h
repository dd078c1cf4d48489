#ifndef OLMKIT_TESTS_FAKEHOST_FAKEHOST_H
#define OLMKIT_TESTS_FAKEHOST_FAKEHOST_H

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "filter/olmfilter.h"
#include "tests/fakehost/Bytes.h"
#include "tests/fakehost/HostCall.h"
#include "tests/fakehost/ItemDocument.h"
#include "tests/fakehost/StoredMessage.h"

namespace fakehost {

// A host in memory. While one stands, all that the module imports on this thread is answered by
// it: memory blocks, the archive, the reader, the storage writer. Every call is recorded, any call
// can be made to fail, and all that is handed out is counted.
//
// Misuse (a handle used after its close, a block unlocked too often, a reader never prepared, a
// routine that nobody may call) fails the test when the host ends.
class FakeHost {
public:
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    // The host that stands on this thread; aborts when there is none.
    static FakeHost& current();

    // --- The archive: entries in the order of the calls; all of them before it is opened.

    // An entry of bytes; read as XML it has no tag.
    FakeHost& entry(const std::string& name, Bytes bytes);
    // A document; `bytes` is what reading it as a stream gives.
    FakeHost& entry(const std::string& name, const ItemDocument& document, Bytes bytes = {});
    // Opens of this entry fail with `status` and no handle.
    FakeHost& brokenEntry(const std::string& name, int32_t status = -7);
    // The open of the raw stream fails with `status` and sets the request's flags.
    void refuseArchive(int32_t status, uint16_t flags);

    // The raw stream, for VwStreamOpen. Belongs to the host.
    HostStream* rawStream();
    // The archive opened without the module: for tests of one class. Belongs to the host; whether
    // it is closed is up to the test.
    ArchiveDirectory* openArchive();
    // The request that the last open of the raw stream got.
    [[nodiscard]] const ArchiveOpenRequest& lastArchiveRequest() const;
    // The requests of all opens of entries.
    [[nodiscard]] const std::vector<MemberOpenRequest>& memberRequests() const;
    // A stream over `bytes`, as an entry would be.
    HostStream* byteStream(Bytes bytes);
    // What UTXMLReadContent gives at the end of a text, with a count of 0. At first 1.
    void setEndOfTextStatus(int16_t status);

    // --- Outputs and messages.

    // A stream that takes a message, or bytes.
    HostStream* newOutput();
    // A root storage over a new output, made and recorded like any other: for tests of one class.
    HostStream* newRoot();
    // What was stored through `output`, as it stands; of the newest output when none is given.
    [[nodiscard]] StoredMessage message(HostStream* output = nullptr) const;
    // The bytes that were written to an output itself.
    [[nodiscard]] Bytes outputBytes(HostStream* output = nullptr) const;
    // Ends the output: everything that hangs from it is given back.
    void endOutput(HostStream* output);

    // --- Failures. `k` counts from 0, from the moment of the call on; one failure of each kind.

    // The k-th call of `kind` fails: a status of `status`, no handle, no block, no bytes. A failed
    // UTXMLReadNextTag breaks its reader for good when `status` is negative.
    void failCall(CallKind kind, int k, int32_t status = -1);
    // The k-th call that can fail fails, of any kind but Lock (a host that fails a lock does not
    // come back from SoRtnBail, so that takes a test of its own).
    void failAnyCall(int k, int32_t status = -1);
    // The k-th write takes at most `written` bytes and gives `status`.
    void shortenWrite(int k, uint32_t written, int32_t status = 0);
    // No further failures.
    void failNothing();
    // Calls that failAnyCall() could have met since the last call of resetCallCount().
    [[nodiscard]] int hostCallCount() const;
    void resetCallCount();
    // Whether an asked-for failure has come about.
    [[nodiscard]] bool hasFailed() const;

    // --- What happened.

    [[nodiscard]] const std::vector<HostCall>& calls() const;
    [[nodiscard]] std::vector<std::string> callTexts() const;
    [[nodiscard]] std::vector<std::string> callTexts(CallKind kind) const;
    // Calls of one function, by its name: "SoRtnBreak", "IOCreate", "UTXMLReadContent", "close".
    [[nodiscard]] std::vector<std::string> callsOf(const std::string& function) const;
    [[nodiscard]] int countOf(CallKind kind) const;
    void forgetCalls();
    // Each tag map that was added, row by row.
    using TagMap = std::vector<std::pair<std::string, uint64_t>>;
    [[nodiscard]] const std::vector<TagMap>& tagMaps() const;

    // --- What is handed out and not yet given back.

    [[nodiscard]] int openHandles() const;  // archives, entries, storages, streams; no outputs
    [[nodiscard]] int openReaders() const;  // between UTXMLInit and UTXMLDeInit
    [[nodiscard]] int openBlocks() const;   // between SYSNativeAlloc and SYSNativeFree
    [[nodiscard]] int lockedBlocks() const; // locked at least once
    [[nodiscard]] size_t blockSize(uint64_t handle) const;
    // What stays open, one text each.
    [[nodiscard]] std::vector<std::string> openHandleTexts() const;

    // --- For the parts of the host.

    void record(CallKind kind, std::string text, uint64_t user0 = 0, uint64_t user1 = 0);
    // True when this call has to fail; `status` is then what it gives.
    bool takeFailure(CallKind kind, int32_t& status);
    // Keeps a misuse for the end of the test.
    void misuse(const std::string& text);
    // The misuses so far, for tests of the host itself; forgets them.
    std::vector<std::string> takeMisuses();

    struct Parts;
    Parts& parts() { return *state; }

private:
    std::unique_ptr<Parts> state;
    FakeHost* previous;
};

} // namespace fakehost

#endif
