// Trees whose parents own their children and whose children know their parent.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace MVR::Util {

/// Base of a `T` whose objects form a tree. The order of its operations is frozen.
template <class T>
class Composite_Dynamic {
public:
    /// Destroys this object as its own class does.
    virtual void destroyComposite() = 0;
    /// Called on a child after it has joined a parent.
    virtual void onAttached() {}
    /// Called on a child before it leaves its parent's list.
    virtual void onDetached() {}
    /// Leaves the parent, then destroys the children, last first.
    virtual ~Composite_Dynamic();

    /// Moves `child` from its present parent, if any, to the end of this list and owns it from now
    /// on. Null does nothing.
    void add(T* child);
    /// As `add`, but puts `child` before the one that has `index` once `child` has left its parent.
    /// A negative index, or one past the end, appends.
    void insert(T* child, std::int32_t index);
    /// Removes `child` from the list of its parent, even if that isn't this object, so that it has
    /// no parent. The caller owns it from now on. Null does nothing.
    void remove(T* child);

    const std::vector<T*>& getChildren() const { return children_; }
    /// Returns null for a root.
    Composite_Dynamic* getParent() const { return parent_; }

protected:
    Composite_Dynamic() = default;
    Composite_Dynamic(const Composite_Dynamic&) = delete;
    Composite_Dynamic& operator=(const Composite_Dynamic&) = delete;

private:
    void detach(Composite_Dynamic* child);

    std::vector<T*> children_; // owned: destroyComposite(), which removes each from the list
    Composite_Dynamic* parent_ = nullptr;
};

template <class T>
void Composite_Dynamic<T>::add(T* child) {
    insert(child, -1);
}

template <class T>
void Composite_Dynamic<T>::insert(T* child, std::int32_t index) {
    if (child == nullptr)
        return;
    Composite_Dynamic* const base = child;
    remove(child);
    base->parent_ = this;
    const bool appends = index < 0 || static_cast<std::size_t>(index) >= children_.size();
    children_.insert(appends ? children_.end() : children_.begin() + index, child);
    base->onAttached();
}

template <class T>
void Composite_Dynamic<T>::remove(T* child) {
    if (child == nullptr)
        return;
    Composite_Dynamic* const base = child;
    if (base->parent_ != nullptr)
        base->parent_->detach(base);
}

template <class T>
void Composite_Dynamic<T>::detach(Composite_Dynamic* child) {
    const auto isChild = [child](Composite_Dynamic* each) { return each == child; };
    // A child is in the list once, and most leave in the reverse order of joining.
    if (std::any_of(children_.rbegin(), children_.rend(), isChild)) {
        child->onDetached(); // may itself change the list
        const auto found = std::find_if(children_.rbegin(), children_.rend(), isChild);
        if (found != children_.rend())
            children_.erase(std::next(found).base());
    }
    child->parent_ = nullptr;
}

template <class T>
Composite_Dynamic<T>::~Composite_Dynamic() {
    if (parent_ != nullptr)
        parent_->detach(this);
    while (!children_.empty()) {
        const auto count = children_.size();
        Composite_Dynamic* const last = children_.back();
        last->destroyComposite();
        if (children_.size() >= count) // it didn't destroy itself
            detach(children_.back());
    }
}

} // namespace MVR::Util
