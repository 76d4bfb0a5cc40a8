// The core's link to its adaptor.
#pragma once

#include "core/contract/adaptor_interface.h"
#include "core/services/core_sub_system.h"
#include "core/util/thread_check.h"

#include <cstdint>
#include <string>

namespace MVR {

/// Holds the adaptor of this attachment, and makes its folder below the user's documents.
class AdaptorManager : public CoreSubSystem {
public:
    /// `adaptor` isn't owned and outlives this object.
    AdaptorManager(CoreImplementation* core, CoreServices* services, AdaptorInterface* adaptor);
    ~AdaptorManager() override;

    AdaptorInterface* getAdaptor() const {
        Util::checkHostThread();
        return adaptor_;
    }
    /// Returns the user's folder for this host; empty if there is none. Asks the adaptor for its
    /// name.
    std::string getUserFolder() const;

    /// Returns the host's window that the main dialog belongs to; 0 until it was opened.
    std::intptr_t getParentWindow() const { return parentWindow_; }
    void setParentWindow(std::intptr_t window) { parentWindow_ = window; }

private:
    AdaptorInterface* adaptor_;
    std::intptr_t parentWindow_ = 0;
};

} // namespace MVR
