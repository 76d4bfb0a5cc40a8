/// \file
/// Process-wide services that are created on first use and destroyed newest first at one known
/// moment.
///
/// 1. `T::instance()` creates the service at its first call and hands it to the collector.
/// 2. `SingletonCollector::destroyAll()` destroys all of them in the reverse order of creation.
///
/// Each library that compiles this header has pointers and a collector of its own. A library that
/// is given a service by another one (an adaptor its log, a driver the device handler) calls
/// `T::adopt(given)`, so that its own copy of the code works on the given object, and
/// `T::adopt(nullptr)` before that object goes.
#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

/// Keeps a name out of a library's dynamic symbols, whatever the visibility the library is built
/// with: were these names shared, two libraries would silently share one pointer.
#if defined(__GNUC__) && !defined(_WIN32)
#define MVR_LIBRARY_LOCAL __attribute__((visibility("hidden")))
#else
#define MVR_LIBRARY_LOCAL
#endif

namespace MVR::Util {

/// The root of every singleton class. The order of its operations is frozen.
class SingletonReference {
public:
    /// Destroys the instance that the class's static pointer holds. Called by the collector only.
    virtual void destroySingleton() = 0;
    virtual ~SingletonReference() = default;
};

/// Base of a process-wide service `T`, which befriends it and has a private default constructor.
/// Further objects of `T` may exist on the stack or by value; they are no one's singleton and
/// cost nothing here.
template <class T>
class Singleton : public SingletonReference {
public:
    /// The one service of this library, or the one it adopted; created at the first call. Never
    /// null. May be called in destructors of younger singletons, and not once `destroyAll` has
    /// returned.
    MVR_LIBRARY_LOCAL static T* instance();

    /// True if `instance` has something to give without creating it.
    MVR_LIBRARY_LOCAL static bool exists() { return current_ != nullptr; }

    /// Makes `foreign`, another library's service, this library's one. It is neither owned nor
    /// collected here, and must live until it is let go with null, which brings back the service
    /// that this library had of its own, if any.
    MVR_LIBRARY_LOCAL static void adopt(T* foreign) {
        current_ = foreign != nullptr ? foreign : own_;
    }

    void destroySingleton() override;
    ~Singleton() override;

protected:
    Singleton() = default;
    Singleton(const Singleton&) = default;
    Singleton& operator=(const Singleton&) = default;

private:
    MVR_LIBRARY_LOCAL static T* makeOwn();

    MVR_LIBRARY_LOCAL inline static T* current_ = nullptr;
    MVR_LIBRARY_LOCAL inline static T* own_ = nullptr;
    // The base part of `own_`: known without a cast while `T`'s part is gone already.
    MVR_LIBRARY_LOCAL inline static const Singleton* ownBase_ = nullptr;
};

/// The list of this library's singletons in the order of creation, itself the first.
class SingletonCollector : public Singleton<SingletonCollector> {
public:
    /// Destroys every singleton of this library, newest first and the collector last. Does nothing
    /// if there are none. Called once, when the library is unloaded.
    static void destroyAll();

    void add(SingletonReference* singleton) { singletons_.push_back(singleton); }
    /// Takes every entry of `singleton` off the list, searching from the end.
    void remove(const SingletonReference* singleton);

private:
    friend class Singleton<SingletonCollector>;
    SingletonCollector() = default;

    std::vector<SingletonReference*> singletons_; // not owned: each frees itself
};

template <class T>
inline T* Singleton<T>::instance() {
    return current_ != nullptr ? current_ : makeOwn();
}

template <class T>
T* Singleton<T>::makeOwn() {
    // Reachable before it is in the list: the collector and other singletons may use it.
    own_ = current_ = new T;
    ownBase_ = own_;
    SingletonCollector::instance()->add(own_);
    return own_;
}

template <class T>
void Singleton<T>::destroySingleton() {
    T* const doomed = own_;
    delete doomed;
    if (current_ == doomed)
        current_ = nullptr;
    own_ = nullptr;
    ownBase_ = nullptr;
}

template <class T>
Singleton<T>::~Singleton() {
    if constexpr (!std::is_same_v<T, SingletonCollector>) // its list is gone by now
        if (this == ownBase_)
            SingletonCollector::instance()->remove(this);
}

} // namespace MVR::Util
