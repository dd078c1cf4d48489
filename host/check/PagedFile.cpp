#include "host/check/PagedFile.h"

#include <algorithm>
#include <cassert>

namespace olmhost {

ByteSpan PagedFile::bytes(std::uint64_t offset, std::size_t count) {
    const std::uint64_t number = offset / pageSize;
    assert(count > 0 && number == (offset + count - 1) / pageSize && offset + count <= fileSize);

    std::unique_ptr<Page>& page = pages[number % pages.size()];
    if (page == nullptr) {
        page = std::make_unique<Page>();
    }
    if (!page->isFilled || page->number != number) {
        const std::uint64_t start = number * pageSize;
        const auto size =
            static_cast<std::size_t>(std::min<std::uint64_t>(pageSize, fileSize - start));
        page->isFilled = false;
        if (const int failure = source.read(start, std::span(page->bytes).first(size))) {
            throw ReadFailure{failure};
        }
        page->number = number;
        page->isFilled = true;
    }
    return ByteSpan(page->bytes).subspan(offset % pageSize, count);
}

} // namespace olmhost
