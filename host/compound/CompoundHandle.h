#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDHANDLE_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDHANDLE_H

#include <list>
#include <memory>

#include "host/compound/Directory.h"
#include "host/stream/Handle.h"

namespace olmhost {

class CompoundOutput;

// A storage or stream that the module holds. Its output owns it until it is closed.
class CompoundHandle : public Handle {
public:
    // `owner` outlives the handle.
    CompoundHandle(CompoundOutput& owner, EntryReference reference)
        : output(owner), entry(reference) {}

    // Closes the handle: calls settle() and deletes it.
    void end() override;

    // Writes what the handle still holds to the file. A second call does nothing.
    virtual void settle() noexcept {}

    // Its position among the open handles; set by the output.
    std::list<std::unique_ptr<CompoundHandle>>::iterator place;

protected:
    CompoundOutput& output;
    const EntryReference entry;
};

} // namespace olmhost

#endif
