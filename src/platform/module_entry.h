#pragma once

/// Defines this library's entry point: `onLoad` runs when the library is loaded, `onUnload` when it
/// is freed or the process ends. Both have no parameters and no result. Use it once, in one source
/// file of a shared library. The library must hold no static object with a destructor: such objects
/// are destroyed before `onUnload` runs. Stands for DllMain.
#if defined(__GNUC__)
#define MVR_MODULE_ENTRY(onLoad, onUnload)                                                         \
    __attribute__((constructor)) static void moduleEntered() {                                     \
        onLoad();                                                                                  \
    }                                                                                              \
    __attribute__((destructor)) static void moduleLeaves() {                                       \
        onUnload();                                                                                \
    }
#else
/// The objects of a library are destroyed in the reverse order of construction, this one among the
/// last.
#define MVR_MODULE_ENTRY(onLoad, onUnload)                                                         \
    static const struct ModuleEntry {                                                              \
        ModuleEntry() { onLoad(); }                                                                \
        ~ModuleEntry() { onUnload(); }                                                             \
    } moduleEntry;
#endif
