#ifndef OLMKIT_FILTER_CORE_OBJECT_H
#define OLMKIT_FILTER_CORE_OBJECT_H

#include "filter/core/AbstractObject.h"

namespace qor {

class String;

// What every object of the library can be asked. The answers here go by identity; classes whose
// objects are values give their own.
class Object : public virtual AbstractObject {
public:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
    ~Object() override = default;

    // Never below 0; the same for the same object as long as it isn't changed.
    virtual int hashCode() const;

    virtual bool equals(const Object& other) const;

    // A text for people: the value, or the class name and the hash code.
    virtual String toString() const;

    // The class of the object given, or of this one, as it is written in C++.
    virtual String className(const Object& object) const;
    virtual String className() const;

    // 32-bit FNV-1a over `count` bytes. The same bytes give the same number in every build.
    static unsigned int hashdata(const unsigned char* bytes, unsigned int count);
};

} // namespace qor

#endif
