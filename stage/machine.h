#pragma once

#include <string>

/// What the stage needs of the machine beyond the standard library and the SDK.
namespace Stage {

/// True if the stream (1 output, 2 errors) is a terminal that a person looks at.
bool isTerminal(int stream);

/// The full path of this program's file; empty if unknown.
std::string ownProgramPath();

/// A shared library that a process loads; freed with its end.
class SharedLibrary {
public:
    SharedLibrary() = default;
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;
    ~SharedLibrary() { free(); }

    /// False, with the system's words in `error`, if it can't be loaded.
    [[nodiscard]] bool load(const std::string& path, std::string& error);
    void free();
    [[nodiscard]] bool isLoaded() const { return handle_ != nullptr; }

    /// The exported function of this name, or null.
    template <typename Function>
    [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(findAddress(name));
    }

private:
    [[nodiscard]] void* findAddress(const char* name) const;

    void* handle_ = nullptr;
};

/// Counts the user's requests to stop (Ctrl+C, or the end of the session) instead of dying of them.
/// The second one ends the program at once.
void catchStopRequests();
[[nodiscard]] bool isStopRequested();

/// Sets a variable of this process's environment, which the libraries it loads see.
void setEnvironment(const char* name, const std::string& value);

/// A number that no other running process has.
long processNumber();

} // namespace Stage
