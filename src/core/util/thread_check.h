/// \file
/// Debug builds stop where something that belongs to the host's thread is called on another one;
/// release builds check nothing.
///
/// 1. `bindHostThread` on the thread that attaches.
/// 2. `checkHostThread` where most calls of the contracts pass.
/// 3. `unbindHostThread` at the end of the attachment: from then on nothing is checked.
///
/// Each library that compiles this has a thread of its own here; one that binds none checks none.
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
