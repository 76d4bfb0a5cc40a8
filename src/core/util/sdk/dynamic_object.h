// Objects that cross library borders or live in trees. Each frees itself with the memory functions
// of the library that made it.
#pragma once

#include <memory>

namespace MVR::Util {

/// Base of objects that free themselves. The order of its operations is frozen.
class DynamicObject {
public:
    /// Destroys this object, which must have been made with `new`, and frees it. Its owner calls it
    /// once; no call of the object follows.
    virtual void destroy() { delete this; }
    virtual ~DynamicObject() = default;
};

/// Lets a `std::unique_ptr` own an object that frees itself by `destroy()`.
struct Destroyer {
    template <class T>
    void operator()(T* object) const {
        object->destroy();
    }
};

/// The owner of an object that frees itself.
template <class T>
using Owned = std::unique_ptr<T, Destroyer>;

/// Marks `T` as a class that a factory creates.
template <class T>
class DynamicCreator {
public:
    virtual ~DynamicCreator() = default;
};

} // namespace MVR::Util
