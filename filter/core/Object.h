#ifndef OLMKIT_FILTER_CORE_OBJECT_H
#define OLMKIT_FILTER_CORE_OBJECT_H

#include "filter/core/AbstractObject.h"

namespace qor {

class String;

// The base of the objects of the library. Objects are compared by identity unless their class
// overrides the functions.
class Object : public virtual AbstractObject {
public:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
    ~Object() override = default;

    // Returns a hash that is not negative and stays the same until the object changes.
    virtual int hashCode() const;

    virtual bool equals(const Object& other) const;

    // Returns readable text: the value, or the class name and the hash code.
    virtual String toString() const;

    // Returns the C++ name of the class of `object`, or of this object.
    virtual String className(const Object& object) const;
    virtual String className() const;

    // Returns the 32-bit FNV-1a hash of `count` bytes.
    static unsigned int hashdata(const unsigned char* bytes, unsigned int count);
};

} // namespace qor

#endif
