#ifndef OLMKIT_HOST_MARKUP_ENTITYSUPPORT_H
#define OLMKIT_HOST_MARKUP_ENTITYSUPPORT_H

#include <cstddef>
#include <optional>

namespace olmhost {

// How far the expat in use can be trusted with entities that are nested in entities.
//
// Without the fix of CVE-2024-8176 (in expat 2.7.0, and in updates of earlier versions), a parser
// that was suspended in a nested entity drops the rest of the outer ones when it is resumed, and a
// long chain of entities overflows its stack. MarkupParser then never suspends such a document, and
// bounds what it adds to the queue and how many entities it declares.
class EntitySupport {
public:
    // Bounds where isSound() is false.
    static constexpr std::size_t maxAdded = std::size_t{64} << 20; // by one fill(), bytes
    static constexpr unsigned maxDeclared = 10000;                 // in one document

    // Returns whether expat has the fix. The first call finds out by a short parse, for which it
    // throws std::bad_alloc when there is no memory.
    static bool isSound();

    // Returns maxAdded, or what a test has put in its place.
    static std::size_t addedLimit();

    // For tests: makes all documents that are opened meanwhile be read as with an expat without
    // the fix. Not for several threads.
    class WithoutFix {
    public:
        explicit WithoutFix(std::size_t addedLimit = maxAdded);
        WithoutFix(const WithoutFix&) = delete;
        WithoutFix& operator=(const WithoutFix&) = delete;
        ~WithoutFix();
    };

private:
    static std::optional<std::size_t> testLimit;
};

} // namespace olmhost

#endif
