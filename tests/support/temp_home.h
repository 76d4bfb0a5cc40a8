#pragma once

#include <string>

namespace MVR::Testing {

/// A folder of the test's own, with a registry that leads the documents and the install values into
/// it. Removed with this object. One at a time.
class TempHome {
public:
    TempHome();
    ~TempHome();
    TempHome(const TempHome&) = delete;
    TempHome& operator=(const TempHome&) = delete;

    /// The documents root of the core, the install folder, and its folders "data" and "plugins".
    std::string documents() const { return root_ + "/documents/Oskelworks/Mirvane"; }
    std::string install() const { return root_ + "/install"; }
    /// Empties the registry, so that nothing can be looked up.
    void forgetRegistry() const;
    /// Writes a file and the folders above it; `path` begins at the home.
    void write(const std::string& path, const std::string& text) const;

private:
    std::string root_;
};

/// Returns the bytes of a file; fails the test if it can't be read.
std::string readText(const std::string& path);

} // namespace MVR::Testing
