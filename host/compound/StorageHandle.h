#ifndef OLMKIT_HOST_COMPOUND_STORAGEHANDLE_H
#define OLMKIT_HOST_COMPOUND_STORAGEHANDLE_H

#include <string_view>

#include "host/compound/CompoundHandle.h"
#include "host/compound/CompoundWriter.h"

namespace olmhost {

// A storage: the root or one inside it. Closing the root finishes the file.
class StorageHandle : public CompoundHandle {
public:
    // `file` is borrowed, as `owner` is.
    StorageHandle(CompoundOutput& owner, CompoundWriter& file, EntryReference reference)
        : CompoundHandle(owner, reference), writer(file) {}

    // As those of CompoundOutput, with this storage as the parent.
    CompoundHandle* createStorage(std::u16string_view name);
    CompoundHandle* createStream(std::u16string_view name);

    // Returns false unless this is the root of a file that is not finished.
    bool setClassId(const ClassId& id);

    void end() override;

private:
    bool isRoot() const { return entry.id == rootEntry; }

    CompoundWriter& writer;
};

} // namespace olmhost

#endif
