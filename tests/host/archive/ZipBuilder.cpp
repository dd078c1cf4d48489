#include "tests/host/archive/ZipBuilder.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include <zlib.h>

namespace olmhost::test {

namespace {

void put(std::string& out, std::uint64_t value, int size) {
    for (int index = 0; index < size; ++index) {
        out.push_back(static_cast<char>(value >> (8 * index)));
    }
}

} // namespace

ZipBuilder& ZipBuilder::add(const ZipMember& member) {
    const std::string packed =
        member.packed.value_or(member.isDeflated ? deflated(member.data) : member.data);
    const std::uint16_t method = member.method.value_or(member.isDeflated ? 8 : 0);
    const std::uint64_t size = member.size.value_or(member.data.size());
    const std::uint64_t packedSize = member.compressedSize.value_or(packed.size());
    const auto dataCrc = static_cast<std::uint32_t>(
        crc32_z(0, reinterpret_cast<const Bytef*>(member.data.data()), member.data.size()));
    const std::uint32_t crc = member.crc.value_or(dataCrc);
    const std::uint64_t offset = member.offset ? *member.offset : start + body.size();
    const bool isLarge =
        member.hasZip64 || size > 0xFFFFFFFE || packedSize > 0xFFFFFFFE || offset > 0xFFFFFFFE;

    std::string common;
    put(common, isLarge ? 45 : 20, 2);
    put(common, member.flags, 2);
    put(common, method, 2);
    put(common, 0x00210000, 4); // midnight of 1980-01-01
    put(common, crc, 4);
    put(common, isLarge ? 0xFFFFFFFF : packedSize, 4);
    put(common, isLarge ? 0xFFFFFFFF : size, 4);
    put(common, member.name.size(), 2);

    std::string sizes;
    put(sizes, size, 8);
    put(sizes, packedSize, 8);
    std::string localExtra;
    std::string extra;
    if (isLarge) {
        put(localExtra, 0x00100001, 4);
        localExtra += sizes;
        put(extra, 0x00180001, 4);
        extra += sizes;
        put(extra, offset, 8);
    }

    body += "PK\3\4" + common;
    put(body, localExtra.size(), 2);
    body += member.name + localExtra + packed;

    directory += "PK\1\2";
    put(directory, 45, 2);
    directory += common;
    put(directory, extra.size(), 2);
    directory += std::string(10, '\0'); // comment, disk, attributes
    put(directory, isLarge ? 0xFFFFFFFF : offset, 4);
    directory += member.name + extra;
    ++count;
    return *this;
}

std::string ZipBuilder::bytes() const {
    return bytesDeclaring(count);
}

std::string ZipBuilder::bytesDeclaring(std::uint64_t entryCount) const {
    const std::uint64_t place = start + body.size();
    const bool isLarge = place > 0xFFFFFFFE || entryCount > 0xFFFE;
    std::string end = "PK\6\6";
    put(end, 44, 8);
    put(end, 0x002D002D, 4);
    put(end, 0, 8);
    put(end, entryCount, 8);
    put(end, entryCount, 8);
    put(end, directory.size(), 8);
    put(end, place, 8);
    end += "PK\6\7";
    put(end, 0, 4);
    put(end, place + directory.size(), 8);
    put(end, 1, 4);
    if (!isLarge) {
        end.clear();
    }
    end += "PK\5\6";
    put(end, 0, 4);
    put(end, std::min<std::uint64_t>(entryCount, 0xFFFF), 2);
    put(end, std::min<std::uint64_t>(entryCount, 0xFFFF), 2);
    put(end, directory.size(), 4);
    put(end, std::min<std::uint64_t>(place, 0xFFFFFFFF), 4);
    put(end, 0, 2);
    return body + directory + end;
}

std::string deflated(const std::string& text) {
    z_stream stream = {};
    constexpr int rawDeflate = -MAX_WBITS;
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, rawDeflate, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::runtime_error("deflateInit2");
    }
    std::string packed(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int status = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (status != Z_STREAM_END) {
        throw std::runtime_error("deflate");
    }
    return packed;
}

std::string someText(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string text;
    while (text.size() < size) {
        text += "<item number=\"" + std::to_string(random()) + "\">" + std::to_string(text.size()) +
                "</item>";
    }
    text.resize(size);
    return text;
}

} // namespace olmhost::test
