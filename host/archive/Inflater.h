#ifndef OLMKIT_HOST_ARCHIVE_INFLATER_H
#define OLMKIT_HOST_ARCHIVE_INFLATER_H

#include <cstddef>
#include <cstdint>
#include <span>

#include <zlib.h>

namespace olmhost {

// Inflates a raw deflate stream, and knows its position in both the deflated and the inflated data.
// Can be copied at any point, and the copy continues from there; a copy takes about 40 KB.
class Inflater {
public:
    enum class State { Running, Finished, Broken };

    // What one step did, in bytes.
    struct Step {
        std::size_t taken; // of the input
        std::size_t made;  // of the output
    };

    // Throws std::bad_alloc, as all operations do.
    Inflater();
    Inflater(const Inflater& other);
    Inflater& operator=(const Inflater& other);
    ~Inflater();

    // Prepares for another stream.
    void reset();

    // Inflates from `input`, the bytes after those taken so far, into `output`. A step that neither
    // takes nor makes anything needs more input.
    Step run(std::span<const std::byte> input, std::span<std::byte> output);

    // Marks the stream as broken.
    void stop() { progress = State::Broken; }

    State state() const { return progress; }
    std::uint64_t taken() const { return takenBytes; } // of the deflated data, so far
    std::uint64_t made() const { return madeBytes; }   // of the inflated data, so far

private:
    // zlib keeps a pointer to it, so it may not move. Mutable since copying takes a non-const
    // source.
    mutable z_stream stream = {};
    State progress = State::Running;
    std::uint64_t takenBytes = 0;
    std::uint64_t madeBytes = 0;
};

} // namespace olmhost

#endif
