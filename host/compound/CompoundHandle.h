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

    // Closes the handle: settle(), then it is deleted.
    void end() override;

    // Puts what the handle still holds into the file. Once done, another call does nothing.
    virtual void settle() noexcept {}

    // Its place among the open handles: the output's affair.
    std::list<std::unique_ptr<CompoundHandle>>::iterator place;

protected:
    CompoundOutput& output;
    const EntryReference entry;
};

} // namespace olmhost

#endif
