#pragma once

/// Defines this library's entry point: `onLoad` runs when the library comes into the process,
/// `onUnload` when it leaves, by a free or with the process. Both take nothing and give nothing.
/// Stands once, in one source file of a shared library, which must hold no static object with a
/// destructor: such objects are gone before `onUnload` runs. Stands for DllMain.
#if defined(__GNUC__)
#define MVR_MODULE_ENTRY(onLoad, onUnload)                                                         \
    __attribute__((constructor)) static void moduleEntered() {                                     \
        onLoad();                                                                                  \
    }                                                                                              \
    __attribute__((destructor)) static void moduleLeaves() {                                       \
        onUnload();                                                                                \
    }
#else
/// The objects of a library end in the reverse order of their making, this one near the last.
#define MVR_MODULE_ENTRY(onLoad, onUnload)                                                         \
    static const struct ModuleEntry {                                                              \
        ModuleEntry() { onLoad(); }                                                                \
        ~ModuleEntry() { onUnload(); }                                                             \
    } moduleEntry;
#endif
