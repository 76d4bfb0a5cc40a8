// The functions that a host's adaptor finds in the library, and the library's entry point.

#include "core/base/sdk/export.h"
#include "core/entry.h"
#include "platform/module_entry.h"

MVR_EXPORT MVR::CoreInterface* attach(MVR::AdaptorInterface* adaptor) {
    return MVR::attachAdaptor(adaptor);
}

MVR_EXPORT std::int32_t detach(MVR::CoreInterface* coreOrNull) {
    return MVR::detachCore(coreOrNull);
}

MVR_EXPORT std::int32_t getVersion() {
    return MVR::kCoreVersion;
}

MVR_EXPORT std::int32_t pumpEvents(MVR::HostEvent* eventOrNull) {
    return MVR::pumpHostEvents(eventOrNull);
}

namespace {

void enter() {
    MVR::libraryLoaded(MVR::Platform::ownModule());
}

} // namespace

MVR_MODULE_ENTRY(enter, MVR::libraryUnloading)
