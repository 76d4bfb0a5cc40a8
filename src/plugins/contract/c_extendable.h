#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace MVR {

/// Optional features, known by small integers, so that a contract grows without new virtuals.
///
/// An object that has no extension inherits the defaults. All three operations may be called as
/// long as the object lives, on the host's user-interface thread; an id's comment says when it
/// comes. The order of the virtual operations is frozen: core, adaptors and tools are compiled
/// apart. It has no virtual destructor; each class below ends its own life as it tells.
class CExtendable {
public:
    /// Performs extension `id`. What `data` points to, and what the result is, depends on the id.
    /// Returns 0 for an id that is not known.
    virtual std::intptr_t extend(std::int32_t id, std::intptr_t data) {
        (void)id;
        (void)data;
        return 0;
    }

    /// The ids that this object answers.
    virtual std::vector<std::int32_t> getExtensions() { return {}; }

    /// True if `id` is one of getExtensions(). A miss is never an error.
    virtual bool supportsExtension(std::int32_t id) {
        const std::vector<std::int32_t> known = getExtensions();
        return std::find(known.begin(), known.end(), id) != known.end();
    }

protected:
    ~CExtendable() = default;
};

} // namespace MVR
