#ifndef OLMKIT_FILTER_CORE_ABSTRACTOBJECT_H
#define OLMKIT_FILTER_CORE_ABSTRACTOBJECT_H

namespace qor {

// The root of the object library: an object that can be deleted through a pointer to its base.
class AbstractObject {
public:
    AbstractObject() = default;
    AbstractObject(const AbstractObject&) = default;
    AbstractObject& operator=(const AbstractObject&) = default;
    virtual ~AbstractObject() = default;
};

} // namespace qor

#endif
