// The four edges of the core's life, which the library's exports and its entry point call.
//
// 1. `libraryLoaded` when the library is loaded into the process.
// 2. `attachAdaptor`, `detachCore`: one attachment at a time, any number in turn.
// 3. `pumpHostEvents` at any time in between.
// 4. `libraryUnloading` when it is unloaded: frees all that the library holds.
//
// All on one thread, the host's.
#pragma once

#include "core/contract/adaptor_interface.h"
#include "core/contract/core_interface.h"
#include "core/contract/host_event.h"
#include "platform/libraries.h"

#include <cstdint>

namespace MVR {

/// Opens the log, registers the common codes, loads the tool libraries. `module` is this library.
void libraryLoaded(Platform::LibraryHandle module);

/// Returns the core of a new attachment; null, and logs it, if the adaptor's version differs or
/// another adaptor is attached.
CoreInterface* attachAdaptor(AdaptorInterface* host);

/// Ends the attachment that `attachAdaptor` returned. Null, or what isn't attached, is only logged.
/// Returns 0; or, with all as it was, the code of "DETACH_NOTNOW" from inside a call that the core
/// makes, a dialog of the core, or itself.
std::int32_t detachCore(CoreInterface* core);

/// The export `pumpEvents`; see "core/host_event.h".
std::int32_t pumpHostEvents(HostEvent* eventOrNull);

/// Destroys the tool libraries and all services. A host that forgot to detach may be half
/// destroyed: then only the log is closed.
void libraryUnloading();

} // namespace MVR
