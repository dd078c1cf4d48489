#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDWRITER_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDWRITER_H

#include <optional>
#include <string_view>

#include "host/compound/CompoundFormat.h"
#include "host/compound/Directory.h"
#include "host/compound/MiniStream.h"
#include "host/compound/SectorStore.h"
#include "host/stream/ByteSink.h"

namespace olmhost {

// Writes a compound file while its streams are written, in any turn.
//
// Sectors are numbered as they fill up, so the output is written from front to back. Held until
// finish(): the directory (about 120 bytes a stream), and of the tables 4 bytes for each sector
// that is not followed by the next one. The header goes out last, over a blank one, so a file that
// was never finished can't be taken for a whole one.
class CompoundWriter {
public:
    // `target` is borrowed and must outlive the writer.
    explicit CompoundWriter(ByteSink& target) : store(target), miniStream(store) {}

    // Makes a storage or an empty stream, in the place of what has that name in `parent`. Nothing
    // when the file is finished, `parent` was replaced itself, or the name is no good.
    std::optional<EntryReference> make(EntryReference parent, EntryType type,
                                       std::u16string_view name);

    // True while bytes of this storage or stream can still get into the file.
    bool accepts(EntryReference entry) const {
        return !isFinished && !failed() && directory.isCurrent(entry);
    }

    // The bytes of a stream shorter than miniStreamLimit, once. Dropped when it was replaced.
    void storeShort(EntryReference stream, ByteSpan bytes);

    // Where a longer stream was written to in sectors(), once; its chain has its end. Given up
    // when the stream was replaced.
    void storeLong(EntryReference stream, StreamPlace place);

    // For the chains of long streams.
    SectorStore& sectors() { return store; }

    void setClassId(const ClassId& id) { directory.setClassId(id); }

    // Writes all that is still missing. Once; every stream was stored.
    void finish();

    bool finished() const { return isFinished; }
    void fail() { store.fail(); }
    bool failed() const { return store.failed(); }

private:
    void freePlace(StreamPlace place);

    SectorStore store;
    MiniStream miniStream;
    Directory directory;
    bool isFinished = false;
};

} // namespace olmhost

#endif
