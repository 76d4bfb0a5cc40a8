// Process-wide services, created on first use and destroyed all at once, newest first.
//
// 1. `T::instance()` creates the service at its first call and hands it to the collector.
// 2. `SingletonCollector::destroyAll()` destroys all of them in the reverse order of creation.
//
// Each library that compiles this header has pointers and a collector of its own. A library that
// gets a service from another one (an adaptor its log, a driver the device handler) calls
// `T::adopt(given)`, so that its own copy of the code works on the given object, and
// `T::adopt(nullptr)` before that object is destroyed.
#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

/// Keeps a name out of a library's dynamic symbols, whatever visibility the library is built with.
/// If these names were shared, two libraries would silently share one pointer.
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

/// Base of a process-wide service `T`. `T` makes this class a friend and has a private default
/// constructor. Further objects of `T` may exist on the stack or by value; they are no singletons
/// and cost nothing here.
template <class T>
class Singleton : public SingletonReference {
public:
    /// Returns this library's service, its own or the one it adopted; the first call creates it.
    /// Never returns null. May be called in destructors of younger singletons, but not after
    /// `destroyAll` has returned.
    MVR_LIBRARY_LOCAL static T* instance();

    /// Returns true if there is a service, so that `instance` won't create one.
    MVR_LIBRARY_LOCAL static bool exists() { return current_ != nullptr; }

    /// Makes another library's service this library's. `foreign` is neither owned nor collected
    /// here and must live until `adopt(nullptr)`, which brings back this library's own service, if
    /// there is one.
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
    // The base part of `own_`, known without a cast when the part of `T` is already gone.
    MVR_LIBRARY_LOCAL inline static const Singleton* ownBase_ = nullptr;
};

/// The list of this library's singletons in the order of creation, itself the first.
class SingletonCollector : public Singleton<SingletonCollector> {
public:
    /// Destroys every singleton of this library, newest first and the collector last. Does nothing
    /// if there are none. Called once, when the library is unloaded.
    static void destroyAll();

    void add(SingletonReference* singleton) { singletons_.push_back(singleton); }
    /// Removes every entry of `singleton`, searching from the end.
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
    // Reachable before it is in the list, since the collector and other singletons may use it.
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
