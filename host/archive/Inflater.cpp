#include "host/archive/Inflater.h"

#include <new>

namespace olmhost {

namespace {

constexpr int rawDeflate = -MAX_WBITS; // no zlib header

} // namespace

Inflater::Inflater() {
    if (inflateInit2(&stream, rawDeflate) != Z_OK) {
        throw std::bad_alloc();
    }
}

Inflater::Inflater(const Inflater& other)
    : progress(other.progress), takenBytes(other.takenBytes), madeBytes(other.madeBytes) {
    if (inflateCopy(&stream, &other.stream) != Z_OK) {
        throw std::bad_alloc();
    }
}

Inflater& Inflater::operator=(const Inflater& other) {
    if (this == &other) {
        return *this;
    }
    inflateEnd(&stream);
    stream = {};
    if (inflateCopy(&stream, &other.stream) != Z_OK) {
        throw std::bad_alloc();
    }
    progress = other.progress;
    takenBytes = other.takenBytes;
    madeBytes = other.madeBytes;
    return *this;
}

Inflater::~Inflater() {
    inflateEnd(&stream);
}

void Inflater::reset() {
    // A failed copy leaves a stream without its state: it is initialized again.
    if (inflateReset(&stream) != Z_OK && inflateInit2(&stream, rawDeflate) != Z_OK) {
        throw std::bad_alloc();
    }
    progress = State::Running;
    takenBytes = 0;
    madeBytes = 0;
}

Inflater::Step Inflater::run(std::span<const std::byte> input, std::span<std::byte> output) {
    // zlib's input is not const, but is only read.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(input.data()));
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(output.data());
    stream.avail_out = static_cast<uInt>(output.size());
    const int status = inflate(&stream, Z_NO_FLUSH);
    const Step step = {input.size() - stream.avail_in, output.size() - stream.avail_out};
    takenBytes += step.taken;
    madeBytes += step.made;
    if (status == Z_MEM_ERROR) {
        throw std::bad_alloc();
    }
    if (status == Z_STREAM_END) {
        progress = State::Finished;
    } else if (status != Z_OK && status != Z_BUF_ERROR) {
        progress = State::Broken;
    }
    return step;
}

} // namespace olmhost
