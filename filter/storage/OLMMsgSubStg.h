#ifndef OLMKIT_FILTER_STORAGE_OLMMSGSUBSTG_H
#define OLMKIT_FILTER_STORAGE_OLMMSGSUBSTG_H

#include <cstdint>

#include "filter/boundary/HostStream.h"
#include "filter/core/String.h"
#include "filter/core/WString.h"

// A storage below a message's root with properties of its own: one recipient or one attachment.
// Its property stream is open for the object's whole life, and every property is written to it at
// the moment it is added.
//
// Properties go by their 16-bit id; the overload chooses the type. Two additions of one id are two
// entries. addProperty() gives true when the property is there as a whole; without a stream for a
// long value there is no entry either.
class OLMMsgSubStg {
public:
    OLMMsgSubStg(const OLMMsgSubStg&) = delete;
    OLMMsgSubStg& operator=(const OLMMsgSubStg&) = delete;

    // A boolean, sign-extended: not a 16-bit integer, as the overload might suggest.
    virtual bool addProperty(unsigned short id, short value);

    // A 32-bit integer, sign-extended: it fills all eight bytes of the entry.
    virtual bool addProperty(unsigned short id, int value);

    // A time, in 100-nanosecond units since 1601.
    virtual bool addProperty(unsigned short id, unsigned long long value);

    // A UTF-16 string. No terminator is written; the entry's size counts one.
    virtual bool addProperty(unsigned short id, const qor::WString& value);

    // An empty binary value, whatever the string holds.
    virtual bool addProperty(unsigned short id, const qor::String& value);

    // A binary value: a copy of what `source` (a HostStream, borrowed, never null) yields until
    // its read() gives a status other than 0. False also after a failed write; then, as after a
    // failed read, the entry has the size reached so far.
    virtual bool addProperty(unsigned short id, void* source);

    // Writes `size` bytes as they are to the property stream and gives 0. Throws qor::Exception
    // with the stream's status when that isn't 0 or when fewer bytes were taken, and then also
    // with 0; a property stream that could not be made counts as status -1.
    virtual unsigned int writeToPropStream(const unsigned char* data, unsigned int size);

    // Closes the property stream, then the storage.
    virtual ~OLMMsgSubStg();

protected:
    OLMMsgSubStg() = default;

    // Makes the storage `prefix` + `number` in 8 hexadecimal digits in `parent` (a HostStream,
    // borrowed) and begins its property stream. Throws what initilize() and writeToPropStream()
    // throw.
    void open(void* parent, const char* prefix, unsigned int number);

    // Makes the storage `name` in `parent` and the property stream in it. Throws qor::Exception
    // with the host's status when the storage can't be made.
    void initilize(void* parent, const qor::WString& name);

    HostStream* storage = nullptr;    // owned
    HostStream* propStream = nullptr; // owned

private:
    bool addEntry(uint32_t tag, uint64_t value);
};

#endif
