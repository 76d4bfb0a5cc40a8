// Named factories, which build objects from tag trees.
//
// 1. At load each factory is given to `registerFactory`; the first of a name wins.
// 2. `find(tag)` returns the factory with the name of the tag, or null.
// 3. `create(tag)` of that factory builds the object.
#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "core/util/sdk/singleton.h"

#include <string>
#include <utility>
#include <vector>

namespace MVR {
class Tag;
}

namespace MVR::Util {

/// The factories of one family of classes, for the life of the library.
template <class T>
class FactoryManager : public Singleton<FactoryManager<T>> {
public:
    /// Builds a `T` from a tag. The factory of a class is its nested `Factory`, which also derives
    /// from `DynamicCreator` of itself. The order of the operations is frozen.
    class Factory : public DynamicObject {
    public:
        /// The name of the tags that this factory builds from, for example "dialog".
        virtual std::string getName() const = 0;
        /// Returns a new object built from `tag`; the caller owns it.
        virtual T* create(Tag tag) = 0;
    };

    /// Returns true if a factory of this name is registered.
    bool hasFactory(const std::string& name) const { return findByName(name) != nullptr; }

    /// Appends `factory`; its name isn't checked.
    void add(Owned<Factory> factory) { factories_.push_back(std::move(factory)); }

    /// Adds `factory`. If its name is in use, destroys it instead and returns false.
    bool registerFactory(Owned<Factory> factory) {
        if (hasFactory(factory->getName()))
            return false;
        add(std::move(factory));
        return true;
    }

    /// Returns the first factory that has the name of `tag`, a `Tag`, or null if there is none. The
    /// manager owns it.
    template <class TagType>
    Factory* find(const TagType& tag) const {
        return findByName(tag.name());
    }

private:
    friend class Singleton<FactoryManager<T>>;
    FactoryManager() = default;

    Factory* findByName(const std::string& name) const {
        for (const Owned<Factory>& factory : factories_)
            if (factory->getName() == name)
                return factory.get();
        return nullptr;
    }

    std::vector<Owned<Factory>> factories_;
};

} // namespace MVR::Util
