#ifndef OLMKIT_FILTER_STORAGE_OLMMSGSUBSTG_H
#define OLMKIT_FILTER_STORAGE_OLMMSGSUBSTG_H

#include <cstdint>

#include "filter/boundary/HostStream.h"
#include "filter/core/String.h"
#include "filter/core/WString.h"

// A storage in the root storage of a message, with its own properties: a recipient or an
// attachment. Its property stream is open for the whole life of the object, and a property is
// written when it is added.
//
// A property is named by its 16-bit id; the overload of addProperty() determines its type. Adding
// an id twice makes two entries. addProperty() returns true when the property was written
// completely. When the stream of a long value can't be made the property has no entry either.
class OLMMsgSubStg {
public:
    OLMMsgSubStg(const OLMMsgSubStg&) = delete;
    OLMMsgSubStg& operator=(const OLMMsgSubStg&) = delete;

    // Adds a boolean, sign-extended; not a 16-bit integer, as the overload suggests.
    virtual bool addProperty(unsigned short id, short value);

    // Adds a 32-bit integer, sign-extended to the 8 bytes of the entry.
    virtual bool addProperty(unsigned short id, int value);

    // Adds a time in 100-nanosecond units since 1601.
    virtual bool addProperty(unsigned short id, unsigned long long value);

    // Adds a UTF-16 string. No terminator is written, but the size in the entry includes one.
    virtual bool addProperty(unsigned short id, const qor::WString& value);

    // Adds an empty binary value, whatever the string contains.
    virtual bool addProperty(unsigned short id, const qor::String& value);

    // Adds a binary value, copied from `source` (a HostStream, borrowed, not null) until its read()
    // returns non-zero. After a failed write the entry has the size copied so far, and the result
    // is false.
    virtual bool addProperty(unsigned short id, void* source);

    // Writes `size` bytes to the property stream. Returns 0. Throws qor::Exception when the status
    // of the stream is not 0 or fewer bytes were written, with that status, possibly 0, as its
    // code; -1 when the property stream could not be made.
    virtual unsigned int writeToPropStream(const unsigned char* data, unsigned int size);

    // Closes the property stream, then the storage.
    virtual ~OLMMsgSubStg();

protected:
    OLMMsgSubStg() = default;

    // Makes a storage in `parent` (a HostStream, borrowed), named `prefix` followed by `number` in
    // 8 hexadecimal digits, and writes the header of its property stream. Throws what initilize()
    // and writeToPropStream() throw.
    void open(void* parent, const char* prefix, unsigned int number);

    // Makes the storage `name` in `parent`, and its property stream. Throws qor::Exception with the
    // status of the host when the storage can't be made.
    void initilize(void* parent, const qor::WString& name);

    HostStream* storage = nullptr;    // owned
    HostStream* propStream = nullptr; // owned

private:
    bool addEntry(uint32_t tag, uint64_t value);
};

#endif
