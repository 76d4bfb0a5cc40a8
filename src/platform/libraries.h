#pragma once

#include <string>
#include <string_view>

namespace MVR::Platform {

/// A library in this process; null is none. Plain data: it frees nothing by itself.
using LibraryHandle = void*;

/// Loads a library, all its symbols bound at once and hidden from other libraries; null on failure.
/// A name without a folder is one in the current folder: system folders are not searched. Further
/// libraries that it needs are found by its own run path ("$ORIGIN"), not in the current folder.
/// Each success is to be matched by one `freeLibrary`. Stands for LoadLibraryA.
LibraryHandle loadLibrary(std::string_view path);

/// The exported function of this name, or null. Valid until the library is freed.
/// Stands for GetProcAddress.
void* findFunction(LibraryHandle library, const char* name);

/// Null does nothing. Stands for FreeLibrary.
void freeLibrary(LibraryHandle library);

/// The library that this code was linked into, or the program. Valid while that is loaded; not to
/// be freed. Stands for the module handle that a library's entry point is given.
LibraryHandle ownModule();
/// The full path of its file; empty if unknown. Stands for GetModuleFileNameA.
std::string ownModulePath();

/// Which files of a folder are libraries: "*.so", "*.dll" or "*.dylib".
std::string libraryPattern();

/// The system's words for why the latest operation of this header failed; empty if none did.
/// Reading it clears it. Stands for GetLastError.
std::string lastLibraryError();

} // namespace MVR::Platform
