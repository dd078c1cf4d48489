#ifndef OLMKIT_HOST_ARCHIVE_INFLATER_H
#define OLMKIT_HOST_ARCHIVE_INFLATER_H

#include <cstddef>
#include <cstdint>
#include <span>

#include <zlib.h>

namespace olmhost {

// A raw deflate stream being inflated, with the two positions it stands at. Can be copied at any
// point, and the copy goes on from there; that costs about 40 KB.
class Inflater {
public:
    enum class State { Running, Finished, Broken };

    // What one step did.
    struct Step {
        std::size_t taken;
        std::size_t made;
    };

    // Throws std::bad_alloc, as do the others.
    Inflater();
    Inflater(const Inflater& other);
    Inflater& operator=(const Inflater& other);
    ~Inflater();

    // Back to the start, for any stream.
    void reset();

    // Inflates from `input`, the bytes that follow those taken so far, into `output`. A step that
    // neither takes nor makes anything needs more input.
    Step run(std::span<const std::byte> input, std::span<std::byte> output);

    // Gives the stream up as broken.
    void stop() { progress = State::Broken; }

    State state() const { return progress; }
    std::uint64_t taken() const { return takenBytes; } // of the deflated data, so far
    std::uint64_t made() const { return madeBytes; }   // of the inflated data, so far

private:
    // zlib keeps a pointer back to it, so it may not move; copying it leaves the source as it was.
    mutable z_stream stream = {};
    State progress = State::Running;
    std::uint64_t takenBytes = 0;
    std::uint64_t madeBytes = 0;
};

} // namespace olmhost

#endif
