#pragma once

/// Marks a function that a library exports under its undecorated name, whatever the visibility
/// that the library is built with:
///
///     MVR_EXPORT std::int32_t getVersion() { return MVR::kPluginInterfaceVersion; }
#if defined(_WIN32)
#define MVR_EXPORT extern "C" __declspec(dllexport)
#else
#define MVR_EXPORT extern "C" __attribute__((visibility("default")))
#endif
