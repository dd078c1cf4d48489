#ifndef OLMKIT_TESTS_FAKEHOST_HOSTCALL_H
#define OLMKIT_TESTS_FAKEHOST_HOSTCALL_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace fakehost {

// The functions of a host.
enum class CallKind {
    Alloc,
    Lock,
    Unlock,
    Free,
    OpenArchive,
    OpenMember,
    Close,
    Read,
    Write,
    Seek,
    ReaderInit,
    ReaderDeInit,
    SetOption,
    AddTagMap,
    ReadNextTag,
    SkipContent,
    GetNextAttribute,
    ReadContent,
    SkipTag,
    GetStateInfo,
    RestoreStateInfo,
    CreateRoot,
    CreateStorage,
    CreateStream,
    SetInfo,
    CopyName,
    Routine, // one of the SoRtn routines
    Count    // the number of kinds
};

// One call as the host saw it.
//
// `text` is the function's name with its arguments in parentheses, handles by their titles and
// without the two user words: SoRtnBreak(5, 0), SoRtnPutText("a", 1, 0x14B00000),
// IOCreate(33, "__properties_version1.0", 18). Numbers from 1000 up are hexadecimal.
struct HostCall {
    CallKind kind = CallKind::Count;
    std::string text;
    uint64_t user0 = 0; // routines only
    uint64_t user1 = 0; // likewise

    // Returns the part of `text` before the parenthesis.
    [[nodiscard]] std::string name() const;
    friend void PrintTo(const HostCall& call, std::ostream* out);
};

// Returns a number in the form of call texts.
std::string number(uint64_t value);

} // namespace fakehost

#endif
