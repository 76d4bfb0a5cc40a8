// The parts that one attachment of the core is put together from.
#pragma once

namespace MVR {

class CoreImplementation;
class CoreServices;

namespace Core {

/// True from the moment when all subsystems of the core exist until the last one is destroyed.
extern bool subsystemInitialized;

} // namespace Core

/// Base of a subsystem, and of what needs to find the core.
///
/// 1. The constructors of the core's subsystems enter themselves into a list, in their order. The
///    core doesn't exist yet: a constructor must not use it.
/// 2. `initializeAll` calls `initialize` on each of them.
/// 3. The destructors remove them again.
class CoreSubSystem {
public:
    /// Both are null for an object that is used outside of a core.
    CoreSubSystem(CoreImplementation* core, CoreServices* services);
    CoreSubSystem(const CoreSubSystem&) = delete;
    CoreSubSystem& operator=(const CoreSubSystem&) = delete;

    /// Called once, when all subsystems exist.
    virtual void initialize();
    /// Returns the core, or null outside of one. Warns the user if it isn't complete yet.
    virtual CoreImplementation* getCore() const;
    virtual ~CoreSubSystem();
    /// Returns what the core offers its parts. Not allowed outside of a core.
    [[nodiscard]] CoreServices& getServices() const { return *services_; }

    /// Called by the core when it is complete.
    static void initializeAll();

private:
    CoreImplementation* core_;
    CoreServices* services_;
};

} // namespace MVR
