#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace MVR {

/// Optional features, identified by small integers, so that a contract grows without new virtual
/// operations.
///
/// An object that has no extension inherits the defaults. All three operations may be called as
/// long as the object lives, on the host's user-interface thread; an id's comment says when it is
/// sent. The order of the virtual operations is frozen: core, adaptors and tools are compiled
/// apart. There is no virtual destructor; each derived class says how its objects are freed.
class CExtendable {
public:
    /// Performs extension `id`. What `data` points to and what the result is depends on the id.
    /// Returns 0 for an unknown id.
    virtual std::intptr_t extend(std::int32_t id, std::intptr_t data) {
        (void)id;
        (void)data;
        return 0;
    }

    /// Returns the ids that this object answers.
    virtual std::vector<std::int32_t> getExtensions() { return {}; }

    /// Returns true if `id` is one of getExtensions(). An unsupported id is never an error.
    virtual bool supportsExtension(std::int32_t id) {
        const std::vector<std::int32_t> known = getExtensions();
        return std::find(known.begin(), known.end(), id) != known.end();
    }

protected:
    ~CExtendable() = default;
};

} // namespace MVR
