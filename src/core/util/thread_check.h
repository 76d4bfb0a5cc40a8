// Debug builds stop when something that belongs to the host's thread is called on another one.
// Release builds check nothing.
//
// 1. `bindHostThread` on the thread that attaches.
// 2. `checkHostThread` in operations that most calls of the contracts pass through.
// 3. `unbindHostThread` at the end of the attachment. Nothing is checked after it.
//
// Each library that compiles this binds a thread of its own; one that binds none checks nothing.
#pragma once

namespace MVR::Util {

#ifdef NDEBUG
inline void bindHostThread() {}
inline void unbindHostThread() {}
inline void checkHostThread() {}
#else
void bindHostThread();
void unbindHostThread();
void checkHostThread();
#endif

} // namespace MVR::Util
