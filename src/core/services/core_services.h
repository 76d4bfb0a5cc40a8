/// \file
/// The one door: what a subsystem asks of the whole core.
#pragma once

#include <cstdint>
#include <string>

namespace MVR {

class AdaptorInterface;
class CoreInterface;
class FaultList;
class InstanceManager;
class PluginInstance;
class ToolListChanges;
class UserDialogs;

/// What the parts of one attachment need of each other. Each CoreSubSystem and each placed tool is
/// handed it. It outlives all of them; but no constructor of a subsystem may ask it for anything,
/// as the other parts aren't there yet. Host thread only.
class CoreServices {
public:
    /// The adaptor of this attachment; never null.
    [[nodiscard]] virtual AdaptorInterface* getAdaptor() const = 0;
    /// The user's folder for this host; empty if there is none. Asks the adaptor for its name.
    [[nodiscard]] virtual std::string getUserFolder() const = 0;
    /// The host's window that the main dialog belongs to; 0 until it was opened.
    [[nodiscard]] virtual std::intptr_t getParentWindow() const = 0;
    /// The core as the adaptor sees it, for its settings and to start and stop what takes time.
    [[nodiscard]] virtual CoreInterface& getInterface() const = 0;
    /// The setting "countdown before a take" in whole seconds; 0 for none.
    [[nodiscard]] virtual std::int32_t getStartCountdown() const = 0;
    /// True if a take continues after the end of the host's range.
    [[nodiscard]] virtual bool getAutoExpand() const = 0;
    /// The tree of placed tools.
    [[nodiscard]] virtual InstanceManager& getTree() const = 0;
    /// What the last operation could not do.
    [[nodiscard]] virtual FaultList& getFaults() = 0;
    /// Who changes the tree tells it.
    [[nodiscard]] virtual ToolListChanges& getToolListChanges() = 0;
    /// What the user is asked and shown.
    [[nodiscard]] virtual UserDialogs& getDialogs() = 0;

    /// True during a take and during a resimulation.
    [[nodiscard]] virtual bool isRecording() const = 0;
    /// Removes a tool from the running take or resimulation, finished if `finish`; harmless for one
    /// that has no part in it.
    virtual void leaveTake(PluginInstance* instance, bool finish) = 0;

protected:
    ~CoreServices() = default;
};

} // namespace MVR
