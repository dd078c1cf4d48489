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

// Writes a compound file while its streams are written, in any order.
//
// Sectors are numbered as they fill up, so the output is written sequentially. Held until finish():
// the directory (about 120 bytes per stream), and of the tables 4 bytes for each sector that is not
// followed by the next one. The header is written last, over a blank one, so an unfinished file
// can't be mistaken for a whole one.
class CompoundWriter {
public:
    // `target` is borrowed and must outlive the writer.
    explicit CompoundWriter(ByteSink& target) : store(target), miniStream(store) {}

    // Makes a storage or an empty stream, and replaces what has that name in `parent`. Returns none
    // when the file is finished, `parent` was itself replaced, or the name is not valid.
    std::optional<EntryReference> make(EntryReference parent, EntryType type,
                                       std::u16string_view name);

    // Returns true while bytes of this storage or stream can still be written to the file.
    bool accepts(EntryReference entry) const {
        return !isFinished && !failed() && directory.isCurrent(entry);
    }

    // Stores the bytes of a stream shorter than miniStreamLimit, once. Drops them when the stream
    // was replaced.
    void storeShort(EntryReference stream, ByteSpan bytes);

    // Stores where a longer stream is in sectors(), once, after its chain has ended. Frees the
    // chain when the stream was replaced.
    void storeLong(EntryReference stream, StreamPlace place);

    // Returns the sectors, for the chains of long streams.
    SectorStore& sectors() { return store; }

    void setClassId(const ClassId& id) { directory.setClassId(id); }

    // Writes all that is still missing, once, after every stream was stored.
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
