#pragma once

#include "platform/libraries.h"

#include <string>

/// What the stage needs of the machine beyond the standard library and the SDK.
namespace Stage {

/// Returns true if the stream (1 output, 2 errors) is a terminal.
bool isTerminal(int stream);

/// A shared library that a process loads; freed at the end of the object.
class SharedLibrary {
public:
    SharedLibrary() = default;
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary() { free(); }

    /// Returns false, with the system's message in `error`, if it can't be loaded.
    [[nodiscard]] bool load(const std::string& path, std::string& error);
    void free();

    /// Returns the exported function of this name, or null.
    template <typename Function>
    [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(MVR::Platform::findFunction(handle_, name));
    }

private:
    MVR::Platform::LibraryHandle handle_ = nullptr;
};

/// Counts the user's requests to stop (Ctrl+C, or the end of the session), and keeps the first one
/// from ending the program. The second one ends it at once.
void catchStopRequests();
[[nodiscard]] bool isStopRequested();

/// Sets an environment variable of this process, which the libraries it loads see.
void setEnvironment(const char* name, const std::string& value);

/// Returns a number that no other running process has.
long processNumber();

} // namespace Stage
