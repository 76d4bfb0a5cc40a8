#pragma once

#include <string>
#include <string_view>

namespace MVR::Platform {

/// A library in this process; null means none. Plain data: it frees nothing by itself.
using LibraryHandle = void*;

/// Loads a library, all its symbols bound at once and hidden from other libraries. Returns null on
/// failure, also for a file whose end is missing. A name without a folder is one in the current
/// folder: system folders are not searched. Further libraries that it needs are found by its own
/// run path, and otherwise beside it, not in the current folder. Match each success with one
/// `freeLibrary`. Stands for LoadLibraryA.
LibraryHandle loadLibrary(std::string_view path);

/// Returns the exported function of this name, or null. Valid until the library is freed. Stands
/// for GetProcAddress.
void* findFunction(LibraryHandle library, const char* name);

/// Null does nothing. Stands for FreeLibrary.
void freeLibrary(LibraryHandle library);

/// Returns the library or program that this code was linked into. Valid while that is loaded; must
/// not be freed. Stands for the module handle that a library's entry point receives.
LibraryHandle ownModule();
/// Returns the full path of its file, or "" if unknown. Stands for GetModuleFileNameA.
std::string ownModulePath();

/// Returns the wildcard of library files: "*.so", "*.dll" or "*.dylib".
std::string libraryPattern();

/// Returns the system's words for why the latest operation of this header failed, or "" if none
/// did. Reading them clears them. Stands for GetLastError.
std::string lastLibraryError();

} // namespace MVR::Platform
