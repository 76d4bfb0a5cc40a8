// The one interface through which a subsystem asks the whole core.
#pragma once

#include <cstdint>
#include <string>

namespace MVR {

class AdaptorInterface;
class CoreInterface;
class FaultList;
class InstanceManager;
class PluginInstance;
class TakeNotes;
class ToolListChanges;
class UserDialogs;

/// What the parts of one attachment need of each other. Each CoreSubSystem and each placed tool
/// receives it. It outlives all of them, but no constructor of a subsystem may ask it for anything,
/// as the other parts don't exist yet. Host thread only.
class CoreServices {
public:
    /// Returns the adaptor of this attachment; never null.
    [[nodiscard]] virtual AdaptorInterface* getAdaptor() const = 0;
    /// Returns the user's folder for this host; empty if there is none. Asks the adaptor for its
    /// name.
    [[nodiscard]] virtual std::string getUserFolder() const = 0;
    /// Returns the host's window that the main dialog belongs to; 0 until it was opened.
    [[nodiscard]] virtual std::intptr_t getParentWindow() const = 0;
    /// Returns the core as the adaptor sees it, for its settings and for starting and stopping
    /// takes and resimulations.
    [[nodiscard]] virtual CoreInterface& getInterface() const = 0;
    /// Returns the countdown before a take, in whole seconds; 0 for none.
    [[nodiscard]] virtual std::int32_t getStartCountdown() const = 0;
    /// Returns true if a take continues after the end of the host's range.
    [[nodiscard]] virtual bool getAutoExpand() const = 0;
    /// Returns the tree of placed tools.
    [[nodiscard]] virtual InstanceManager& getTree() const = 0;
    /// Returns the list of what the last operation could not do.
    [[nodiscard]] virtual FaultList& getFaults() = 0;
    /// Returns what there is to tell of the last take.
    [[nodiscard]] virtual TakeNotes& getTakeNotes() = 0;
    /// Whoever changes the tree reports it here.
    [[nodiscard]] virtual ToolListChanges& getToolListChanges() = 0;
    /// Returns the dialogs that ask the user and show things.
    [[nodiscard]] virtual UserDialogs& getDialogs() = 0;

    /// Returns true during a take or a resimulation.
    [[nodiscard]] virtual bool isRecording() const = 0;
    /// Returns how many seconds of scene time are due in a live take and not simulated yet.
    [[nodiscard]] virtual double getTakeDelay() const = 0;
    /// Removes a tool from the running take or resimulation, and finishes it if `finish`; does
    /// nothing for one that doesn't participate.
    virtual void leaveTake(PluginInstance* instance, bool finish) = 0;

protected:
    ~CoreServices() = default;
};

} // namespace MVR
