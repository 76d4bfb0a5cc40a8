/// \file
/// Named factories, which build objects from tag trees.
///
/// 1. At load each factory is given to `registerFactory`; the first of a name wins.
/// 2. `find(tag)` gives the factory that is named as the tag, or null.
/// 3. `create(tag)` of that factory builds the object.
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
    /// Builds a `T` from a tag. A class's factory is its nested `Factory`, which derives from
    /// `DynamicCreator` of itself too. The order of the operations is frozen.
    class Factory : public DynamicObject {
    public:
        /// The name of the tags that this factory builds from, for example "dialog".
        virtual std::string getName() const = 0;
        /// A new object built from `tag`; the caller owns it.
        virtual T* create(Tag tag) = 0;
    };

    /// True if a factory of this name is registered.
    bool hasFactory(const std::string& name) const { return findByName(name) != nullptr; }

    /// Appends `factory`; its name isn't checked.
    void add(Owned<Factory> factory) { factories_.push_back(std::move(factory)); }

    /// Adds `factory` unless its name is taken; then it is destroyed at once and false comes back.
    bool registerFactory(Owned<Factory> factory) {
        if (hasFactory(factory->getName()))
            return false;
        add(std::move(factory));
        return true;
    }

    /// The first factory that has the name of `tag`, a `Tag`; null if there is none. The manager
    /// keeps owning it.
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
