#pragma once

#include <string>

namespace MVR::Platform {

/// Looks for what the loader doesn't: a library whose end is missing, such as after a copy that was
/// cut short, ends the process when the loader touches it. Returns why the file at `path` can't be
/// loaded, or "" if nothing speaks against it. Knows the format of this machine's libraries, ELF,
/// and leaves all others to the loader.
std::string faultOfLibraryFile(const std::string& path);

} // namespace MVR::Platform
