#include "host/session/Session.h"

#include <limits>
#include <optional>

#include "host/archive/ArchiveContents.h"
#include "host/archive/ArchiveFile.h"
#include "host/compound/CompoundOutput.h"
#include "host/memory/MemoryOwner.h"
#include "host/session/AttachmentLedger.h"
#include "host/session/Module.h"
#include "host/session/Scan.h"
#include "host/session/ScanRoutines.h"

namespace olmhost {

namespace {

static_assert(int{ModuleDone} == VwSpecialDone && int{ModuleNoItem} == VwSpecialNoItem &&
              int{ModuleFailed} == VwSpecialFailed && moduleStatusFailed == VwSpecialStatusFailed);

constexpr std::int32_t progressDone = 100;

OpenStatus statusOf(OpenFailureKind kind) {
    switch (kind) {
    case OpenFailureKind::NotAnArchive:
        return OpenStatus::NotAnArchive;
    case OpenFailureKind::Damaged:
        return OpenStatus::Damaged;
    case OpenFailureKind::Encrypted:
        return OpenStatus::Encrypted;
    case OpenFailureKind::LimitReached:
        return OpenStatus::LimitReached;
    case OpenFailureKind::None:
    case OpenFailureKind::Unreadable:
        break;
    }
    return OpenStatus::Unreadable;
}

// A request in a block of the host's memory, as the module requires it.
class RequestBlock {
public:
    explicit RequestBlock(const SODOSPECIALARC& request) : block(SYSNativeAlloc(sizeof request)) {
        void* place = block == 0 ? nullptr : SYSNativeLock(block);
        if (place == nullptr) {
            throw std::bad_alloc();
        }
        *static_cast<SODOSPECIALARC*>(place) = request;
        SYSNativeUnlock(block);
    }
    RequestBlock(const RequestBlock&) = delete;
    RequestBlock& operator=(const RequestBlock&) = delete;
    ~RequestBlock() { SYSNativeFree(block); }

    std::uint64_t handle() const { return block; }

private:
    std::uint64_t block;
};

// Keeps an account of what one extraction reads.
class AccountKeeper {
public:
    explicit AccountKeeper(ArchiveFile& file) : file(file) { file.keepAccount(&account); }
    AccountKeeper(const AccountKeeper&) = delete;
    AccountKeeper& operator=(const AccountKeeper&) = delete;
    ~AccountKeeper() { file.keepAccount(nullptr); }

    // Returns what was read so far.
    const ReadAccount& reading() const { return account; }

    void fill(Extraction& extraction) {
        extraction.faults = std::move(account.faults);
        for (const auto& member : account.members) {
            extraction.members.push_back(std::move(*member));
        }
    }

private:
    ArchiveFile& file;
    ReadAccount account;
};

// Watches one extraction: decides when it must end, and how it ended.
class Watch {
public:
    Watch(CompoundOutput& output, const Progress& progress) : output(output), progress(progress) {}

    // The module's callback.
    static std::int32_t onProgress(void* data, std::int32_t value) noexcept {
        return static_cast<Watch*>(data)->answer(value);
    }

    // Throws what the progress callback threw.
    void rethrow() const {
        if (thrown != nullptr) {
            std::rethrow_exception(thrown);
        }
    }

    ExtractionEnd end(std::int32_t result) const {
        if (output.failed()) {
            return ExtractionEnd::SinkFailed;
        }
        if (result != ModuleDone) {
            // A failed writer leaves its storage open.
            return result == ModuleFailed && output.openHandles() == 0 ? ExtractionEnd::NotBegun
                                                                       : ExtractionEnd::Refused;
        }
        if (hasNoWriter) {
            return ExtractionEnd::UnknownRoot;
        }
        if (lastValue == progressDone) {
            return output.isWhole() ? ExtractionEnd::Whole : ExtractionEnd::Refused;
        }
        return ExtractionEnd::Cancelled;
    }

private:
    std::int32_t answer(std::int32_t value) noexcept {
        lastValue = value;
        if (output.openHandles() == 0) {
            // Every writer of a message keeps its storage open. Without one, the module copies the
            // entry as it is, from its start again at every step, and never ends.
            hasNoWriter = true;
            return 1;
        }
        try {
            return progress ? progress(value) : 0;
        } catch (...) {
            thrown = std::current_exception();
            return 1;
        }
    }

    CompoundOutput& output;
    const Progress& progress;
    std::exception_ptr thrown;
    std::optional<std::int32_t> lastValue;
    bool hasNoWriter = false;
};

} // namespace

// An archive that is being opened, is open, or could not be opened.
class Session::Opened {
public:
    Opened(const std::string& path, const SessionOptions& options);
    // The archive that `first` has open.
    explicit Opened(const Opened& first);
    Opened& operator=(const Opened&) = delete;
    ~Opened();

    OpenOutcome open();
    void list(const RowCallback& callback);
    Extraction extract(SODOSPECIALARC request, ByteSink& sink, const Progress& progress,
                       const AttachmentBytes& attachmentBytes);

    ArchiveFile file;
    Scan scan;

private:
    SessionOptions options;
    MemoryOwner memory;
    std::shared_ptr<const Module> module;
    PROC* proc = nullptr;
    std::uint64_t localWord = 0; // which VwLocalUp and VwLocalDown store in
    bool isArchiveOpen = false;
};

Session::Opened::Opened(const std::string& path, const SessionOptions& options)
    : file(path, options.limits), scan(file), options(options) {}

Session::Opened::Opened(const Opened& first)
    : file(first.file), scan(file), options(first.options) {}

Session::Opened::~Opened() {
    const MemoryOwner::Scope scope(memory);
    if (isArchiveOpen) {
        module->streamClose(0, proc);
    }
    if (proc != nullptr) {
        module->localDown(0, &localWord);
        module->freeProc(proc);
    }
    memory.assertNothingLeft();
}

OpenOutcome Session::Opened::open() {
    const MemoryOwner::Scope scope(memory);
    OpenOutcome outcome;
    module = Module::load(options.modulePath, outcome.text);
    if (module == nullptr) {
        outcome.status = OpenStatus::NoModule;
        return outcome;
    }
    proc = module->allocProc();
    if (proc == nullptr) {
        throw std::bad_alloc();
    }
    module->localUp(0, &localWord, proc);
    installScanRoutines(*module, proc, scan);

    const FileInformation information = {};
    if (module->streamOpen(&file, 0, 0, &information, proc) != VwOpenDone) {
        return {statusOf(file.failure().kind), file.failure().text};
    }
    isArchiveOpen = true;
    module->streamSection(0, proc);
    if (!scan.collector().isUsual()) {
        return {OpenStatus::NoModule, "the module is unsuitable: it defines other columns"};
    }
    return outcome;
}

void Session::Opened::list(const RowCallback& callback) {
    const MemoryOwner::Scope scope(memory);
    scan.begin(callback);
    module->streamRead(0, proc);
    scan.rethrow();
}

Extraction Session::Opened::extract(SODOSPECIALARC request, ByteSink& sink,
                                    const Progress& progress,
                                    const AttachmentBytes& attachmentBytes) {
    const MemoryOwner::Scope scope(memory);
    AccountKeeper keeper(file);
    AttachmentLedger ledger(keeper.reading(), attachmentBytes);
    // Destroyed after the call, with everything that a failed writer has left open in it.
    CompoundOutput output(sink, &ledger);
    request.output = &output;
    const RequestBlock block(request);
    Watch watch(output, progress);

    Extraction extraction;
    extraction.result = module->doSpecial(0, block.handle(), &Watch::onProgress, &watch,
                                          &extraction.status, 0, proc);
    watch.rethrow();
    ledger.rethrow();
    extraction.end = watch.end(extraction.result);
    extraction.isCut = output.lostBytes();
    extraction.attachments = ledger.take();
    keeper.fill(extraction);
    return extraction;
}

Session::Session() = default;

Session::~Session() = default;

OpenOutcome Session::open(const std::string& path, const SessionOptions& options) {
    opened.reset();
    return take(std::make_unique<Opened>(path, options));
}

OpenOutcome Session::openBeside(const Session& first) {
    opened.reset();
    return take(std::make_unique<Opened>(*first.opened));
}

OpenOutcome Session::take(std::unique_ptr<Opened> candidate) {
    OpenOutcome outcome = candidate->open();
    if (outcome.status == OpenStatus::Done) {
        opened = std::move(candidate);
    }
    return outcome;
}

const std::vector<Column>& Session::columns() const {
    return opened->scan.collector().columns();
}

std::uint64_t Session::entryCount() const {
    return opened->file.contents().entryCount();
}

std::string_view Session::entryName(std::uint64_t entry) const {
    return opened->file.contents().name(entry);
}

EntrySize Session::entrySize(std::uint64_t entry) const {
    const EntryInfo info = opened->file.contents().info(entry);
    return {info.size, info.compressedSize, info.crc, info.isEncrypted};
}

std::optional<std::uint64_t> Session::findEntry(std::string_view name) const {
    return opened->file.contents().find(name);
}

std::uint64_t Session::archiveSize() const {
    return opened->file.size();
}

void Session::check(std::uint64_t entry) {
    opened->file.checkRest(entry);
}

bool Session::list(const RowCallback& callback) {
    opened->list(callback);
    return opened->scan.isFinished();
}

std::uint64_t Session::itemCount() const {
    return opened->scan.itemCount();
}

const Census& Session::census() const {
    return opened->scan.censusTaker().census();
}

std::optional<ItemKind> Session::documentKind() const {
    return opened->scan.censusTaker().documentKind();
}

void Session::setAttachmentCallback(AttachmentCallback callback) {
    opened->scan.censusTaker().setAttachmentCallback(std::move(callback));
}

bool Session::isOlmArchive() const {
    return itemCount() > 0 || census().hasKnownRoot;
}

Extraction Session::extract(std::uint64_t index, ByteSink& sink, const Progress& progress,
                            const AttachmentBytes& attachmentBytes) {
    if (index >= itemCount() || index > std::numeric_limits<std::int32_t>::max()) {
        // As the module does; but its request has no room for every index.
        Extraction refused;
        refused.result = ModuleFailed;
        refused.status = moduleStatusFailed;
        return refused;
    }
    SODOSPECIALARC request = {};
    request.itemIndex = static_cast<std::int32_t>(index);
    return opened->extract(request, sink, progress, attachmentBytes);
}

Extraction Session::extractAt(std::uint32_t entry, std::uint32_t item, ByteSink& sink,
                              const Progress& progress, const AttachmentBytes& attachmentBytes) {
    SODOSPECIALARC request = {};
    request.flags = SpecialByLocation;
    request.locator = {sizeof request.locator, entry, item};
    return opened->extract(request, sink, progress, attachmentBytes);
}

const std::vector<EntryFault>& Session::faults() const {
    return opened->file.faults();
}

} // namespace olmhost
