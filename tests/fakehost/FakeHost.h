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

// A host in memory. While one exists, it answers everything that the module imports on this
// thread: memory blocks, the archive, the reader, the storage writer. Every call is recorded, any
// call can be made to fail, and everything handed out is counted.
//
// Misuse (a handle used after its close, a block unlocked too often, a reader never prepared, a
// routine that must not be called) fails the test when the host is destroyed.
class FakeHost {
public:
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    // Returns the current host of this thread; aborts without one.
    static FakeHost& current();

    // --- The archive: entries in the order of the calls, all added before it is opened.

    // Adds an entry of bytes; read as XML it has no tag.
    FakeHost& entry(const std::string& name, Bytes bytes);
    // Adds a document; `bytes` is what it holds as a stream.
    FakeHost& entry(const std::string& name, const ItemDocument& document, Bytes bytes = {});
    // Makes every open of this entry fail with `status` and without a handle.
    FakeHost& brokenEntry(const std::string& name, int32_t status = -7);
    // Makes the open of the raw stream fail with `status` and set the request's flags.
    void refuseArchive(int32_t status, uint16_t flags);

    // Returns the raw stream, for VwStreamOpen. Belongs to the host.
    HostStream* rawStream();
    // Opens the archive without the module, for tests of one class. Belongs to the host; the test
    // may leave it open.
    ArchiveDirectory* openArchive();
    // Returns the request of the last open of the raw stream.
    [[nodiscard]] const ArchiveOpenRequest& lastArchiveRequest() const;
    // Returns the requests of all opens of entries.
    [[nodiscard]] const std::vector<MemberOpenRequest>& memberRequests() const;
    // Returns a stream over `bytes`, like that of an entry.
    HostStream* byteStream(Bytes bytes);
    // Sets what UTXMLReadContent returns at the end of a text, with a count of 0. Default: 1.
    void setEndOfTextStatus(int16_t status);

    // --- Outputs and messages.

    // Returns a stream that takes a message, or bytes.
    HostStream* newOutput();
    // Makes a root storage over a new output, recorded like any other, for tests of one class.
    HostStream* newRoot();
    // Returns what was stored through `output` so far; null means the newest output.
    [[nodiscard]] StoredMessage message(HostStream* output = nullptr) const;
    // Returns the bytes that were written to an output itself.
    [[nodiscard]] Bytes outputBytes(HostStream* output = nullptr) const;
    // Ends the output and closes all its storages and streams.
    void endOutput(HostStream* output);

    // --- Failures. `k` counts from 0, starting now; one pending failure of each kind.

    // Makes the k-th call of `kind` fail: it returns `status`, no handle, no block, no bytes. A
    // failed UTXMLReadNextTag breaks its reader for good when `status` is negative.
    void failCall(CallKind kind, int k, int32_t status = -1);
    // Makes the k-th call that can fail do so, of any kind except Lock (a host that fails a lock
    // does not return from SoRtnBail, so that takes a test of its own).
    void failAnyCall(int k, int32_t status = -1);
    // Makes the k-th write take at most `written` bytes and return `status`.
    void shortenWrite(int k, uint32_t written, int32_t status = 0);
    // Cancels all pending failures.
    void failNothing();
    // Returns how many calls failAnyCall() could have hit since resetCallCount().
    [[nodiscard]] int hostCallCount() const;
    void resetCallCount();
    // Whether a requested failure has happened.
    [[nodiscard]] bool hasFailed() const;

    // --- What happened.

    [[nodiscard]] const std::vector<HostCall>& calls() const;
    [[nodiscard]] std::vector<std::string> callTexts() const;
    [[nodiscard]] std::vector<std::string> callTexts(CallKind kind) const;
    // Returns the calls of one function: "SoRtnBreak", "IOCreate", "UTXMLReadContent", "close".
    [[nodiscard]] std::vector<std::string> callsOf(const std::string& function) const;
    [[nodiscard]] int countOf(CallKind kind) const;
    void forgetCalls();
    // Each tag map that was added, row by row.
    using TagMap = std::vector<std::pair<std::string, uint64_t>>;
    [[nodiscard]] const std::vector<TagMap>& tagMaps() const;

    // --- What is handed out and not yet returned.

    [[nodiscard]] int openHandles() const;  // archives, entries, storages, streams; no outputs
    [[nodiscard]] int openReaders() const;  // between UTXMLInit and UTXMLDeInit
    [[nodiscard]] int openBlocks() const;   // between SYSNativeAlloc and SYSNativeFree
    [[nodiscard]] int lockedBlocks() const; // locked at least once
    [[nodiscard]] size_t blockSize(uint64_t handle) const;
    // Returns one text for each open handle.
    [[nodiscard]] std::vector<std::string> openHandleTexts() const;

    // --- For the parts of the host.

    void record(CallKind kind, std::string text, uint64_t user0 = 0, uint64_t user1 = 0);
    // Returns true when this call has to fail; `status` is then what it returns.
    bool takeFailure(CallKind kind, int32_t& status);
    // Records a misuse, which fails the test when the host is destroyed.
    void misuse(const std::string& text);
    // Returns the misuses so far and forgets them, for tests of the host itself.
    std::vector<std::string> takeMisuses();

    struct Parts;
    Parts& parts() { return *state; }

private:
    std::unique_ptr<Parts> state;
    FakeHost* previous;
};

} // namespace fakehost

#endif
